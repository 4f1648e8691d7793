#include "page/table.h"
#include "show/changes.h"

#include <algorithm>

namespace page {

using machine::Row;

namespace {

void writeCell(Html& html, const std::string& words) {
  if (words.empty()) {
    html.unknown();
  } else {
    html.text(words);
  }
}

void writeRow(Html& html, std::span<const Shown* const> columns, const Row& row) {
  const auto line = html.in("tr");
  bool first = true;
  for (const Shown* column : columns) {
    const auto cell = first ? html.in("th", {"scope", "row"}) : html.in("td");
    first = false;
    writeCell(html, column->words(row));
    const std::string below = column->below ? column->below(row) : "";
    if (below.empty()) continue;
    html.text(" ");
    html.element("small", below);
  }
}

}  // namespace

void writeTable(Html& html, std::string_view label, std::span<const Shown> columns,
                std::span<const Row* const> rows) {
  std::vector<const Shown*> known;
  for (const Shown& column : columns) {
    const bool isFirst = &column == &columns.front();
    if (isFirst || std::ranges::any_of(
                       rows, [&column](const Row* row) { return !column.words(*row).empty(); })) {
      known.push_back(&column);
    }
  }
  const auto frame = html.in("div", {"class", "scroll"}, {"role", "region"}, {"aria-label", label},
                             {"tabindex", "0"});
  const auto table = html.in("table");
  {
    const auto head = html.in("thead");
    const auto line = html.in("tr");
    for (const Shown* column : known) {
      html.element("th", column->heading, {"scope", "col"}, {"title", column->meaning});
    }
  }
  const auto body = html.in("tbody");
  for (const Row* row : rows) writeRow(html, known, *row);
}

void writeWholeTable(Html& html, const machine::Table& table, const machine::TableData& data) {
  if (!table.single) {
    std::vector<Shown> columns;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const machine::Column& column = table.columns[i];
      columns.push_back({show::labelOf(column),
                         [i, &column](const Row& row) { return show::figureOf(column, row[i]); },
                         column.meaning});
    }
    // What a person calls a row heads it.
    const auto name = std::ranges::find_if(columns, [](const Shown& column) {
      return column.heading == "name" || column.heading == "model" || column.heading == "profile";
    });
    if (name != columns.end()) std::rotate(columns.begin(), name, std::next(name));
    writeTable(html, table.meaning, columns, all(data.rows));
    return;
  }
  const auto whole = html.in("table");
  const auto body = html.in("tbody");
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const auto line = html.in("tr");
    html.element("th", show::labelOf(table.columns[i]), {"scope", "row"});
    {
      const auto cell = html.in("td");
      writeCell(html, show::figureOf(table.columns[i], data.rows.front()[i]));
    }
    html.element("td", table.columns[i].meaning, {"class", "dim"});
  }
}

std::vector<const Row*> all(const std::vector<Row>& rows) {
  std::vector<const Row*> pointers;
  pointers.reserve(rows.size());
  for (const Row& row : rows) pointers.push_back(&row);
  return pointers;
}

}  // namespace page
