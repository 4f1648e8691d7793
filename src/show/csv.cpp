#include "show/csv.h"

#include <variant>

#include "base/text.h"
#include "machine/valueText.h"

namespace show {

namespace {

void addText(std::string_view text, std::string& line) {
  constexpr std::string_view kFormula = "=+-@\t\r\n";
  const bool formula = !text.empty() && kFormula.find(text.front()) != std::string_view::npos;
  const bool quoted =
      holdsAny(text, [](char c) { return (c == ',') | (c == '"') | (c == '\r') | (c == '\n'); });
  if (quoted) line += '"';
  if (formula) line += '\'';
  for (auto mark = text.find('"'); mark != std::string_view::npos; mark = text.find('"')) {
    line.append(text.substr(0, mark)).append("\"\"");
    text.remove_prefix(mark + 1);
  }
  line += text;
  if (quoted) line += '"';
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
