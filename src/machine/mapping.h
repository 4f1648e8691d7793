#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

#include "machine/description.h"

// Mapping tables of the sources: "the first of these keys that the item has, converted, is that
// column".

namespace machine {

// One line of a mapping table.
template <typename Convert>
struct Cell {
  std::size_t column = 0;
  std::array<const char*, 4> keys{};  // the first one that the item has; the others are null
  Convert convert{};
};

// The same line as it is written, by the column's name.
template <typename Convert>
struct NamedCell {
  const char* column = nullptr;
  const char* keys[4] = {};
  Convert convert{};
};

// Finds the columns. In a constant a name that the schema lacks does not compile.
template <typename Convert, std::size_t count>
constexpr std::array<Cell<Convert>, count> cells(std::string_view table,
                                                 const NamedCell<Convert> (&named)[count]) {
  std::array<Cell<Convert>, count> found{};
  for (std::size_t i = 0; i < count; ++i) {
    found[i].column = columnAt(table, named[i].column);
    std::copy(std::begin(named[i].keys), std::end(named[i].keys), found[i].keys.begin());
    found[i].convert = named[i].convert;
  }
  return found;
}

// Sets each column that has a key with a known value: the first such key's; the others stay. `find`
// gives what the item has under a key, or something that converts to false.
template <typename Convert, typename Find>
void writeCells(std::span<const Cell<Convert>> cells, const Find& find, Row& row) {
  for (const Cell<Convert>& cell : cells) {
    for (const char* key : cell.keys) {
      if (key == nullptr) break;
      const auto source = find(key);
      if (!source) continue;
      Value value = cell.convert(*source);
      if (!isKnown(value)) continue;
      row[cell.column] = std::move(value);
      break;
    }
  }
}

}  // namespace machine
