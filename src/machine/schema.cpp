#include "machine/schema.h"

#include <algorithm>

namespace machine {

const Table* findTable(std::string_view name) {
  const auto found = std::ranges::find(kTables, name, &Table::name);
  return found == std::end(kTables) ? nullptr : found;
}

const Column* findColumn(const Table& table, std::string_view name) {
  const auto found = std::ranges::find(table.columns, name, &Column::name);
  return found == table.columns.end() ? nullptr : &*found;
}

}  // namespace machine
