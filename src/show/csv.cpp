#include "show/csv.h"

#include <algorithm>
#include <variant>

#include "machine/valueText.h"

namespace show {

namespace {

bool isOneOf(char c, std::string_view characters) {
  return characters.find(c) != std::string_view::npos;
}

void addText(std::string_view text, std::string& line) {
  const bool formula = !text.empty() && isOneOf(text.front(), "=+-@\t\r\n");
  const bool plain = std::ranges::none_of(
      text, [](char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; });
  if (!plain) line += '"';
  if (formula) line += '\'';
  if (plain) {
    line += text;
    return;
  }
  for (const char c : text) line.append(c == '"' ? 2 : 1, c);
  line += '"';
}

void addCell(const machine::Value& value, std::string& line) {
  if (!machine::isKnown(value)) return;
  if (std::holds_alternative<std::string>(value)) {
    addText(machine::textOf(value), line);
  } else {
    line += machine::valueText(value);
  }
}

}  // namespace

std::string csvLine(const machine::Row& row) {
  std::string line;
  for (const machine::Value& value : row) {
    addCell(value, line);
    line += ',';
  }
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
  std::string front;
  addText(file, front);
  front += ',';
  addCell(machine.machine(machine::columnAt("machine", "serial")), front);
  std::string lines;
  for (const machine::Row& row : machine[machine::tableAt(table.name)].rows) {
    lines += front;
    for (const machine::Value& value : row) {
      lines += ',';
      addCell(value, lines);
    }
    lines += '\n';
  }
  return lines;
}

}  // namespace show
