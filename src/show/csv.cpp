#include "show/csv.h"

#include <variant>

#include "machine/valueText.h"

namespace show {

namespace {

std::string quoted(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string cell = "\"";
  for (const char c : text) cell.append(c == '"' ? 2 : 1, c);
  return cell + '"';
}

std::string textCell(std::string_view text) {
  const bool formula = text.find_first_of("=+-@\t\r\n") == 0;
  return quoted(formula ? "'" + std::string(text) : std::string(text));
}

std::string cell(const machine::Value& value) {
  return std::holds_alternative<std::string>(value) ? textCell(machine::textOf(value))
                                                    : machine::valueText(value);
}

}  // namespace

std::string csvLine(const machine::Row& row) {
  std::string line;
  for (const machine::Value& value : row) line += cell(value) + ",";
  line.back() = '\n';
  return line;
}

std::string csvHeader(const machine::Table& table) {
  std::string line = "file,machine_serial";
  for (const machine::Column& column : table.columns) line += "," + std::string(column.name);
  return line + "\n";
}

std::string csvRows(const machine::Table& table, const machine::Description& machine,
                    std::string_view file) {
  const std::string front =
      textCell(file) + "," + cell(machine.machine(machine::columnAt("machine", "serial")));
  std::string lines;
  for (const machine::Row& row : machine[machine::tableAt(table.name)].rows) {
    lines += front;
    for (const machine::Value& value : row) lines += "," + cell(value);
    lines += '\n';
  }
  return lines;
}

}  // namespace show
