#pragma once

#include "keva/kevaDoc.h"

// "Processes": the list that was collected into the raw tree, copied whole.
void PostProcessProcesses(kevaDoc& snapshot, const kevaDoc& raw);
