#pragma once

#include "keva/kevaDoc.h"

// "Processors": one tag for each physical package, of which 1,024 are listed at most. The profiler
// describes all packages at once, so they carry the same figures.
void PostProcessProcessors(kevaDoc& snapshot, const kevaDoc& raw);
