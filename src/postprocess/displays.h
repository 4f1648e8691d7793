#pragma once

#include "keva/kevaDoc.h"

// "Video": graphics processors and monitors.
void PostProcessDisplays(kevaDoc& snapshot, const kevaDoc& raw);
