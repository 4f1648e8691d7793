#include <optional>
#include <string>
#include <string_view>

#include "machine/cleanText.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kTable = tableAt("memory");

constexpr std::size_t at(std::string_view column) {
  return columnAt("memory", column);
}

int hexDigit(char c) {
  constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
  const std::size_t place = kDigits.find(c);
  return place == std::string_view::npos ? -1 : static_cast<int>(place % 16);
}

// A part number, which many modules' come as the hexadecimal numbers of its ASCII letters, filled
// up with blanks or zeros.
Value partNumber(const PropertyList& value) {
  Value known = stated(value);
  std::string_view digits = textOf(known);
  if (!digits.starts_with("0x") || digits.size() < 8 || digits.size() % 2 != 0) return known;
  std::string letters;
  for (digits.remove_prefix(2); !digits.empty(); digits.remove_prefix(2)) {
    const int high = hexDigit(digits[0]);
    const int low = hexDigit(digits[1]);
    if (high < 0 || low < 0) return known;
    const int letter = high * 16 + low;
    if (letter != 0 && (letter < 0x20 || letter > 0x7E)) return known;
    letters += letter == 0 ? ' ' : static_cast<char>(letter);
  }
  return textValue(letters);
}

constexpr Line kModuleLines[] = {
    {"size_mb",      {"dimm_size"},          megabytes },
    {"type",         {"dimm_type"},          stated    },
    {"speed_mhz",    {"dimm_speed"},         clock     },
    {"manufacturer", {"dimm_manufacturer"},  stated    },
    {"part_number",  {"dimm_part_number"},   partNumber},
    {"serial",       {"dimm_serial_number"}, stated    },
};
constexpr auto kModule = cells("memory", kModuleLines);

constexpr Line kSlotLines[] = {
    {"slot",   {"_name"},       text},
    {"status", {"dimm_status"}, text},
};
constexpr auto kSlot = cells("memory", kSlotLines);

// `board`: what the slot stands in, which says whether modules can be changed.
Row slotRow(const PropertyList& slot, const PropertyList& board) {
  Row row = emptyRow(kTable);
  write(kSlot, slot, row);
  const std::string_view status = textIn(slot, "dimm_status");
  if (!status.empty()) row[at("used")] = status == "ok";
  if (status != "empty") write(kModule, slot, row);
  const std::optional<bool> upgradeable = flagIn(board, "is_memory_upgradeable");
  if (upgradeable) row[at("soldered")] = !*upgradeable;
  return row;
}

// Memory that is part of the processor has no slots: the item is all of it, with its size under the
// name of the data type.
Row solderedRow(const PropertyList& memory) {
  Row row = emptyRow(kTable);
  write(kModule, memory, row);
  row[at("size_mb")] = megabytes(*memory.find("SPMemoryDataType"));
  row[at("used")] = true;
  row[at("soldered")] = true;
  return row;
}

}  // namespace

void readProfiledMemory(const Profile& profile, Description& machine) {
  TableData& table = machine[kTable];
  table.recorded = profile.has("SPMemoryDataType");
  profile.forEach("SPMemoryDataType", [&](const PropertyList& item) {
    if (item.find("SPMemoryDataType") != nullptr) {
      table.rows.push_back(solderedRow(item));
    } else if (item.find("_items") == nullptr) {
      table.rows.push_back(slotRow(item, item));
    } else {
      for (const PropertyList& slot : listIn(item, "_items")) {
        table.rows.push_back(slotRow(slot, item));
      }
    }
  });
}

}  // namespace machine::profiler
