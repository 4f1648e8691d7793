#include "inspect/search.h"

#include "inspect/letterCase.h"
#include "machine/valueText.h"

namespace inspect {

using machine::Description;
using machine::Identity;
using machine::isKnown;
using machine::kTableCount;
using machine::kTables;
using machine::Row;
using machine::Table;
using machine::valueText;

std::vector<Match> search(const Description& machine, std::string_view term) {
  std::vector<Match> matches;
  const std::string wanted = foldCase(term);
  if (wanted.empty()) return matches;
  for (std::size_t place = 0; place < kTableCount; ++place) {
    const Table& table = kTables[place];
    const std::vector<Row>& rows = machine[place].rows;
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const std::string text = valueText(rows[row][i]);
        if (foldCase(text).find(wanted) == std::string::npos) continue;
        matches.push_back({&table, row, &table.columns[i], text});
      }
    }
  }
  return matches;
}

std::string rowTitle(const Table& table, const Row& row, std::size_t number) {
  for (const std::string_view name : {"name", "model"}) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (table.columns[i].name == name && isKnown(row[i])) return valueText(row[i]);
    }
  }
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (table.columns[i].identity != Identity::No && isKnown(row[i])) return valueText(row[i]);
  }
  return std::to_string(number);
}

}  // namespace inspect
