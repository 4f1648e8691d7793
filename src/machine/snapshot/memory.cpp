#include "machine/snapshot/item.h"
#include "machine/snapshot/sections.h"

namespace machine::snapshot {

namespace {

constexpr std::size_t kTable = tableAt("memory");

constexpr Line kSlotLines[] = {
    {"slot",         {"bank-label"}, text  },
    {"used",         {"used"},       flag  },
    {"size_mb",      {"capacity"},   count },
    {"type",         {"mem-type"},   stated},
    {"speed_mhz",    {"speed"},      count },
    {"manufacturer", {"manuf"},      stated},
};
constexpr auto kSlot = cells("memory", kSlotLines);

}  // namespace

void readMemory(const TagView& top, Description& machine) {
  const auto memory = top.child("Memory");
  if (!memory) return;
  TableData& table = machine[kTable];
  forEach(*memory, "Memory-slot:", [&table](const TagView& slot) {
    Row& row = addRow(table, kTable);
    write(kSlot, slot, row);
    // A slot is in use when its state is that.
    const bool used = row[columnAt("memory", "used")] == Value(true);
    if (used) row[columnAt("memory", "status")] = "ok";
    table.recorded = table.recorded || used;
  });
  // No Mac runs without memory: what is soldered states no condition, and so counts as not in use.
  if (!table.recorded) table.rows.clear();
}

}  // namespace machine::snapshot
