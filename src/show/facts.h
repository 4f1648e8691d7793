#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "machine/description.h"
#include "show/terminal.h"

// What the card and the pages say of a machine, in words; "" where nothing is known.

namespace show {

// --- Values. A column that the schema lacks does not compile.

consteval std::size_t at(const char* table, const char* column) {
  return machine::columnAt(table, column);
}

inline std::string text(const machine::Value& value) {
  return onOneLine(machine::textOf(value));
}

template <typename T>
std::optional<T> known(const machine::Value& value) {
  const T* found = std::get_if<T>(&value);
  return found == nullptr ? std::nullopt : std::optional(*found);
}
inline constexpr auto integer = known<std::int64_t>;

inline bool isTrue(const machine::Value& value) {
  return known<bool>(value).value_or(false);
}

inline const std::vector<machine::Row>& rowsOf(const machine::Description& machine,
                                               std::string_view table) {
  return machine[machine::tableAt(table)].rows;
}

// --- The machine

// What people call it: by its name, else by its model, else "a Mac".
std::string nameOf(const machine::Description& machine);

std::string modelText(const machine::Description& machine);     // "MacBook Pro (MacBookPro18,3)"
std::string scanTime(const machine::Description& machine);      // "2026-11-21 16:22"
std::string systemText(const machine::Description& machine);    // with build, name and uptime
std::string chipText(const machine::Description& machine);      // with clock and cores
std::string memoryText(const machine::Description& machine);    // size, type, slots
std::string graphicsText(const machine::Description& machine);  // adapters that are not in the chip
std::string batteryText(const machine::Description& machine);   // of the first one
std::string softwareText(const machine::Description& machine);  // how much there is
std::string attachedText(const machine::Description& machine);  // USB devices and printers

// --- Rows of tables

std::string displayName(const machine::Row& display);  // "Color LCD 14.2""
std::string displayMode(const machine::Row& display);  // "3024 x 1964, built-in"
std::string displayText(const machine::Row& display);  // both
std::string diskText(const machine::Row& disk);  // all but its health: "APPLE SSD, 500 GB SSD"

// Volumes of one container share its space: they are one pool, named after the one that the system
// started from, else after the first.
struct Pool {
  const machine::Row* volume;
  std::vector<const machine::Row*> others;
};

// That of the system first; disk images, which newer systems mount for themselves, last.
std::vector<Pool> pools(const machine::Description& machine);

std::string poolKind(const Pool& pool);  // "encrypted APFS"

// What is used of its space, and all of it, in bytes; nothing when the figures are none.
struct Space {
  std::int64_t used;
  std::int64_t whole;
};
std::optional<Space> spaceOf(const Pool& pool);

}  // namespace show
