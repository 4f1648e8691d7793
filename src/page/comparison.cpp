#include <algorithm>
#include <utility>
#include <vector>

#include "page/html.h"
#include "page/parts.h"
#include "page/report.h"
#include "show/changes.h"
#include "show/facts.h"
#include "show/figures.h"

namespace page {

using inspect::Change;
using show::at;
using show::joined;
using show::text;

namespace {

struct Kind {
  const char* word;
  const char* style;
};
constexpr Kind kKinds[] = {
    {"added",   "tag good"},
    {"removed", "tag bad" },
    {"changed", "tag warn"},
};

void writeValue(Html& html, const Change& change, const machine::Row* row) {
  const auto cell = html.in("td");
  const auto place = static_cast<std::size_t>(change.column - change.table->columns.data());
  const std::string words = show::figureOf(*change.column, (*row)[place]);
  if (words.empty()) {
    html.unknown();
  } else {
    html.text(words);
  }
}

// A row that came or went, by what it says of itself.
std::string rowWords(const Change& change) {
  constexpr std::size_t kMost = 4;
  const machine::Row& row = change.after == nullptr ? *change.before : *change.after;
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < row.size() && parts.size() < kMost; ++i) {
    const std::string words = show::figureOf(change.table->columns[i], row[i]);
    if (words.empty() || words == change.row) continue;
    parts.push_back(show::labelOf(change.table->columns[i]) + ": " + words);
  }
  return joined(parts);
}

void writeChange(Html& html, const Change& change) {
  const auto line = html.in("tr");
  const Kind& kind = kKinds[static_cast<std::size_t>(change.kind)];
  html.element("th", change.row.empty() ? show::labelOf(*change.column) : change.row,
               {"scope", "row"});
  {
    const auto cell = html.in("td");
    html.element("span", kind.word, {"class", kind.style});
    if (!change.row.empty() && change.column != nullptr)
      html.text(" " + show::labelOf(*change.column));
  }
  if (change.column == nullptr) {
    html.element("td", rowWords(change), {"colspan", "2"});
    return;
  }
  writeValue(html, change, change.before);
  writeValue(html, change, change.after);
}

void writeChanges(Html& html, const inspect::Comparison& compared) {
  const std::vector<Change>& changes = compared.changes;
  for (auto first = changes.begin(); first != changes.end();) {
    const machine::Table& table = *first->table;
    const auto last = std::find_if(
        first, changes.end(), [&table](const Change& change) { return change.table != &table; });
    const auto section = beginSection(html, table.name, asTitle(table.meaning));
    const auto frame =
        html.in("div", {"class", "scroll"}, {"role", "region"},
                {"aria-label", "changes: " + std::string(table.meaning)}, {"tabindex", "0"});
    const auto grid = html.in("table", {"class", "changes"});
    {
      const auto head = html.in("thead");
      const auto line = html.in("tr");
      for (const char* heading : {"what", "how", "before", "after"})
        html.element("th", heading, {"scope", "col"});
    }
    const auto body = html.in("tbody");
    for (; first != last; ++first) writeChange(html, *first);
  }
}

}  // namespace

std::string comparison(const Side& before, const Side& after, const inspect::Comparison& compared,
                       std::string_view program) {
  const std::string name = show::nameOf(after.machine);
  return document(name + ": what changed", [&](Html& html) {
    {
      const auto header = html.in("header");
      {
        const auto heading = html.in("h1");
        html.isolated(name);
        html.text(": what changed");
      }
      html.element("p", joined({show::modelText(after.machine),
                                text(after.machine.machine(at("machine", "serial")))}));
      html.element(
          "p",
          joined({"from " + scanWords(before.machine), "to " + scanWords(after.machine)}, " "));
    }
    {
      const auto main = html.in("main", {"id", "main"});
      if (!compared.sameMachine) {
        const auto notice = html.in("section", {"class", "notice"}, {"aria-label", "Warning"});
        const auto serial = [](const Side& side) {
          const std::string known = text(side.machine.machine(at("machine", "serial")));
          return known.empty() ? show::nameOf(side.machine) : known;
        };
        html.element("p", "These are two different machines: " + serial(before) + " and " +
                              serial(after) + ".");
      }
      if (compared.changes.empty()) {
        const auto section = html.in("section", {"aria-label", "Changes"});
        html.element("p", "Nothing changed.");
      } else {
        writeChanges(html, compared);
      }
    }
    const auto footer = html.in("footer");
    writeIdentity(html, before.machine, before.file);
    writeIdentity(html, after.machine, after.file);
    writeMaker(html, program);
  });
}

}  // namespace page
