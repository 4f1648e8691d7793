#include "machine/description.h"

namespace machine {

std::string_view textOf(const Value& value) {
  const std::string* text = std::get_if<std::string>(&value);
  return text == nullptr ? std::string_view() : *text;
}

Row emptyRow(std::size_t table) {
  return Row(kTables[table].columns.size());
}

const Value& Description::machine(std::size_t column) const {
  static const Value kUnknown;
  const std::vector<Row>& rows = tables_[tableAt("machine")].rows;
  return rows.empty() ? kUnknown : rows.front()[column];
}

namespace {

std::string identity(const Table& table, const Row& row, Identity which) {
  std::string joined;
  bool known = false;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (table.columns[i].identity != which) continue;
    known = known || isKnown(row[i]);
    joined += std::string(textOf(row[i])) + '\x1F';  // only texts identify
  }
  return known ? joined : "";
}

}  // namespace

std::string identityOf(const Table& table, const Row& row) {
  std::string first = identity(table, row, Identity::First);
  return first.empty() ? identity(table, row, Identity::Second) : first;
}

}  // namespace machine
