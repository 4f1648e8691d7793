#pragma once

#include "keva/kevaDoc.h"

// "Memory": every slot, numbered through all banks, and the machine's physical memory.
void PostProcessMemory(kevaDoc& snapshot, const kevaDoc& raw);
