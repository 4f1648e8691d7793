#include "postprocess/memory.h"

#include "base/quantities.h"
#include "postprocess/mapping.h"
#include "postprocess/memorySlots.h"

namespace {

// Megabytes, through single precision; 0 when the slot does not say its size.
TagValue megabytes(const TagValue& size, const char*) {
  if (size.kind() == TagValue::Kind::None) return TagValue(std::int64_t{0});
  return TagValue(truncateToInteger(static_cast<float>(SizeToMB(textOf(size)))));
}

constexpr Row kModule[] = {
    {"manuf",      {"dimm_manufacturer"}, copied               },
    {"capacity",   {"dimm_size"},         orAbsent({megabytes})},
    {"mem-type",   {"dimm_type"},         copied               },
    {"speed",      {"dimm_speed"},        orAbsent(firstWord)  },
    {"bank-label", {"_name"},             copied               },
};

void writeSlot(const Item& slot, Tag& tag) {
  const bool used = slot.text("dimm_status") == "ok";
  tag.setAttribute("used", TagValue(used ? "1" : "0"));
  if (used) write(kModule, slot, tag);
}

}  // namespace

void PostProcessMemory(kevaDoc& snapshot, const kevaDoc& raw) {
  if (!items(raw, "SPMemoryDataType").empty()) branch(snapshot, {"Memory"});
  Entries slots(snapshot, {"Memory"}, "Memory-slot:");
  for (const MemorySlot& slot : memorySlots(raw)) writeSlot(slot.item, slots.add());
  const std::vector<Item> hardware = items(raw, "SPHardwareDataType");
  if (hardware.empty()) return;
  const double memory = strictQuantity(SizeToMB, hardware.front(), "physical_memory");
  branch(snapshot, {"Memory", "General-info"})
      .setAttribute("physical-memory", TagValue(truncateToInteger(memory)));
}
