#pragma once

#include "keva/tag.h"

// Sorts the children of a tag by their own values, letters of ASCII without regard to case;
// children that are equal keep their order. One or two children stay as they are.
void sortChildrenByValue(Tag& parent);
