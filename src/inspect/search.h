#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "machine/description.h"

namespace inspect {

// One value that holds what was searched for.
struct Match {
  const machine::Table* table;
  std::size_t row;
  const machine::Column* column;
  std::string value;
};

// Where a term stands: in any part of a text or figure as valueText shows it, in any case of its
// letters (of Latin, Greek and Cyrillic script). An empty term stands nowhere.
std::vector<Match> search(const machine::Description& machine, std::string_view term);

// What a person calls a row: "name" or "model" where the table has one that is known,
// else its first known value that identifies it, else its number, from 1.
std::string rowTitle(const machine::Table& table, const machine::Row& row, std::size_t number);

}  // namespace inspect
