#pragma once

#include <vector>

#include "postprocess/mapping.h"

// A slot for a memory module, as two steps write it.
struct MemorySlot {
  Item item;
  unsigned number;  // in its bank, from 1 on; of a slot without a bank, among the reported items
};

// All slots, bank by bank, in the order they were reported.
std::vector<MemorySlot> memorySlots(const kevaDoc& raw);
