#include "support/rows.h"

#include <gtest/gtest.h>

#include <charconv>
#include <regex>
#include <string>
#include <system_error>

namespace {

template <typename Number>
machine::Value numberIn(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  EXPECT_TRUE(read.ec == std::errc() && read.ptr == end) << "no number: " << text;
  return number;
}

machine::Value valueIn(machine::Type type, std::string_view text) {
  if (type == machine::Type::Integer) return numberIn<std::int64_t>(text);
  if (type == machine::Type::Real) return numberIn<double>(text);
  if (type == machine::Type::Text) return std::string(text);
  EXPECT_TRUE(text == "true" || text == "false") << "no flag: " << text;
  return text == "true";
}

// What stands in front of a separator, which is taken off with it.
std::string_view takeUntil(std::string_view& text, std::string_view separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(std::min(end + separator.size(), text.size()));
  return taken;
}

void addRow(machine::Description& machine, std::string_view line) {
  const bool hasRow = line.find(':') != std::string_view::npos;
  const std::string_view name = takeUntil(line, ":");
  const machine::Table* const table = machine::findTable(name);
  ASSERT_NE(table, nullptr) << "no table: " << name;
  machine::TableData& data = machine[machine::tableAt(table->name)];
  data.recorded = true;
  if (hasRow) data.rows.emplace_back(table->columns.size());
  for (line.remove_prefix(line.starts_with(' ') ? 1 : 0); !line.empty();) {
    std::string_view value = takeUntil(line, " | ");
    const std::string_view column = takeUntil(value, "=");
    const machine::Column* const known = machine::findColumn(*table, column);
    ASSERT_NE(known, nullptr) << table->name << " has no column: " << column;
    lastValue(machine, table->name, column) = valueIn(known->type, value);
  }
}

}  // namespace

void addRows(machine::Description& machine, std::string_view lines) {
  static const std::regex kGoesOn("\n *\\| ");
  const std::string rows = std::regex_replace(std::string(lines), kGoesOn, " | ");
  std::string_view text = rows;
  while (!text.empty()) {
    std::string_view line = takeUntil(text, "\n");
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) addRow(machine, line);
  }
}

machine::Description described(machine::Source source, std::string_view lines) {
  machine::Description machine(source);
  addRows(machine, lines);
  return machine;
}

machine::Value& lastValue(machine::Description& machine, std::string_view table,
                          std::string_view column) {
  return machine[machine::tableAt(table)].rows.back()[machine::columnAt(table, column)];
}
