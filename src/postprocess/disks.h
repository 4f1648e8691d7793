#pragma once

#include "keva/kevaDoc.h"

// "Storage": the fixed disks and optical drives in "Physical-disks", their volumes as one flat list
// in "Logical-disks". Disks are stated in decimal gigabytes, as their makers do, volumes in binary
// ones.
void PostProcessDisks(kevaDoc& snapshot, const kevaDoc& raw);
