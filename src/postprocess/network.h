#pragma once

#include "keva/kevaDoc.h"

// "Network": one adapter for each network interface, numbered as they were reported.
void PostProcessNetwork(kevaDoc& snapshot, const kevaDoc& raw);
