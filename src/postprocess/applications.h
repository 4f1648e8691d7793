#pragma once

#include "keva/kevaDoc.h"

// "Software": the applications, sorted by name.
void PostProcessApplications(kevaDoc& snapshot, const kevaDoc& raw);
