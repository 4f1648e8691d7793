#include "show/changes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "base/formatString.h"
#include "machine/valueText.h"
#include "show/columns.h"
#include "show/figures.h"
#include "show/terminal.h"

namespace show {

namespace {

using inspect::Change;
using machine::Column;
using machine::Row;
using machine::Table;
using machine::Value;

constexpr std::size_t kLongest = 60;  // columns of a text, before it is cut

// What an application says of itself repeats its version.
constexpr std::string_view kSaidByVersion[] = {"info", "description"};

// What is said of a row that came or went, beyond its name.
constexpr std::string_view kTelling[] = {"version", "setting", "size_bytes", "size_mb"};

bool isOneOf(std::string_view name, const auto& names) {
  return std::ranges::find(names, name) != std::end(names);
}

// "-> 8 GB" in its two parts. What differs too little for a figure is shown as data, what differs
// behind the end of a cut text whole.
std::pair<std::string, std::string> figures(const Change& change) {
  const auto place = static_cast<std::size_t>(change.column - change.table->columns.data());
  const Value& before = (*change.before)[place];
  const Value& after = (*change.after)[place];
  std::string from = figureOf(*change.column, before);
  std::string to = figureOf(*change.column, after);
  if (from == to) {
    from = onOneLine(machine::valueText(before));
    to = onOneLine(machine::valueText(after));
    if (!change.column->unit.empty()) to += " " + std::string(change.column->unit);
    return {from, to};
  }
  if (cut(from, kLongest) != cut(to, kLongest)) {
    from = cut(from, kLongest);
    to = cut(to, kLongest);
  }
  const std::size_t unit = change.column->unit.empty() ? std::string::npos : to.rfind(' ');
  if (unit != std::string::npos && from.ends_with(to.substr(unit))) {
    from.resize(from.size() - (to.size() - unit));
  }
  return {from, to};
}

void addFigures(const Change& change, StyledLine& line) {
  auto [from, to] = figures(change);
  line.left.push_back({from + " -> ", Style::Dim});
  line.left.push_back({std::move(to)});
}

std::string plain(const StyledLine& line) {
  std::string text;
  for (const Span& span : line.left) text += span.text;
  return text;
}

const Row& cameOrWent(const Change& change) {
  return change.kind == Change::Kind::Added ? *change.after : *change.before;
}

StyledLine wholeRow(const Change& change) {
  const bool added = change.kind == Change::Kind::Added;
  const Table& table = *change.table;
  const Row& row = cameOrWent(change);
  StyledLine line{
      {{added ? "+ " : "- ", added ? Style::Good : Style::Bad},
       {std::string(table.thing) + " ", Style::Dim},
       {onOneLine(change.row)}}
  };
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::string figure = figureOf(table.columns[i], row[i]);
    if (isOneOf(table.columns[i].name, kTelling) && !figure.empty()) {
      line.left.push_back({" " + figure, Style::Dim});
    }
  }
  return line;
}

// Lines of rows that went and of rows that came, without their signs: a part replaced by one of the
// same kind has the same in both.
class WholeRows {
 public:
  explicit WholeRows(const std::vector<Change>& changes) {
    for (const Change& change : changes) {
      if (change.kind != Change::Kind::Changed)
        of(change.kind).insert(withoutSign(wholeRow(change)));
    }
  }

  // Tells such rows apart by what identifies them.
  StyledLine line(const Change& change) const {
    StyledLine line = wholeRow(change);
    const std::string text = withoutSign(line);
    if (!removed_.contains(text) || !added_.contains(text)) return line;
    const Table& table = *change.table;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      if (table.columns[i].identity != machine::Identity::First) continue;
      const std::string figure = figureOf(table.columns[i], cameOrWent(change)[i]);
      if (!figure.empty() && figure != onOneLine(change.row)) line.left.push_back({" " + figure});
    }
    return line;
  }

 private:
  static std::string withoutSign(const StyledLine& line) { return plain(line).substr(1); }

  std::unordered_set<std::string>& of(Change::Kind kind) {
    return kind == Change::Kind::Added ? added_ : removed_;
  }

  std::unordered_set<std::string> removed_;
  std::unordered_set<std::string> added_;
};

// The changes of one row.
StyledLine changedRow(std::vector<const Change*> cells) {
  const Table& table = *cells.front()->table;
  const auto version =
      std::ranges::find(cells, "version", [](const Change* cell) { return cell->column->name; });
  StyledLine line{{{"  "}}};
  if (version == cells.end()) {
    line.left.push_back({std::string(table.thing) + " ", Style::Dim});
    line.left.push_back({onOneLine(cells.front()->row) + ": "});
  } else {
    std::rotate(cells.begin(), version, version + 1);
    std::erase_if(cells,
                  [](const Change* cell) { return isOneOf(cell->column->name, kSaidByVersion); });
    line.left.push_back({onOneLine(cells.front()->row) + " "});
  }
  for (const Change* cell : cells) {
    if (cell != cells.front()) line.left.push_back({", "});
    if (cell->column->name != "version") line.left.push_back({labelOf(*cell->column) + " "});
    addFigures(*cell, line);
  }
  return line;
}

StyledLine value(const Change& change) {
  StyledLine line{
      {{"  "}, {labelOf(*change.column) + " "}}
  };
  addFigures(change, line);
  return line;
}

}  // namespace

std::string figureOf(const Column& column, const Value& value) {
  if (!machine::isKnown(value)) return "";
  if (const bool* flag = std::get_if<bool>(&value)) return *flag ? "yes" : "no";
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    if (column.unit == "bytes" && *number >= 0) return size(*number);
    if (column.unit == "MB" && *number > 0) return memorySize(*number);
  }
  const std::string text = onOneLine(machine::valueText(value));
  return column.unit.empty() ? text : text + " " + std::string(column.unit);
}

std::string labelOf(const Column& column) {
  if (column.name == "is_64bit") return "64-bit";
  std::string label(column.name);
  if (!column.unit.empty()) {
    const bool fraction = column.unit.find('/') != std::string_view::npos;  // "_mbit_s"
    label.resize(label.rfind('_', fraction ? label.rfind('_') - 1 : std::string::npos));
  }
  if (label.starts_with("os_")) label.replace(0, 2, "system");
  std::ranges::replace(label, '_', ' ');
  return label;
}

std::vector<StyledLine> changeLines(const std::vector<Change>& changes) {
  std::vector<StyledLine> lines;
  const WholeRows wholeRows(changes);
  std::string last;
  std::size_t times = 0;
  const auto finish = [&] {
    if (times > 1) lines.back().left.push_back({formatString(" (%zu times)", times), Style::Dim});
  };
  for (std::size_t i = 0; i < changes.size();) {
    const Change& change = changes[i];
    std::vector<const Change*> cells = {&change};
    StyledLine line;
    if (change.kind != Change::Kind::Changed) {
      line = wholeRows.line(change);
    } else if (change.table->single) {
      line = value(change);
    } else {
      while (i + cells.size() < changes.size()) {
        const Change& next = changes[i + cells.size()];
        if (next.kind != Change::Kind::Changed || next.before != change.before) break;
        cells.push_back(&next);
      }
      line = changedRow(cells);
    }
    i += cells.size();
    std::string text = plain(line);
    if (!lines.empty() && text == last) {
      ++times;
      continue;
    }
    finish();
    lines.push_back(std::move(line));
    last = std::move(text);
    times = 1;
  }
  finish();
  return lines;
}

}  // namespace show
