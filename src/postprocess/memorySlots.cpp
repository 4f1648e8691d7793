#include "postprocess/memorySlots.h"

std::vector<MemorySlot> memorySlots(const kevaDoc& raw) {
  std::vector<MemorySlot> slots;
  unsigned position = 0;
  for (const Item& item : items(raw, "SPMemoryDataType")) {
    ++position;
    if (item.child("_items") == nullptr) {
      slots.push_back({item, position});
      continue;
    }
    unsigned number = 0;
    for (const Item& slot : nestedItems(item, "_items")) slots.push_back({slot, ++number});
  }
  return slots;
}
