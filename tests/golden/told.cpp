#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "golden/machine.h"
#include "huxread/handmade.h"
#include "inspect/compare.h"
#include "inspect/findings.h"
#include "inspect/lookup.h"
#include "inspect/search.h"
#include "machine/describe.h"
#include "machine/valueText.h"
#include "show/card.h"
#include "show/changes.h"
#include "show/figures.h"
#include "show/grid.h"
#include "show/styledLines.h"
#include "support/fakeHost.h"
#include "support/fileText.h"
#include "support/rows.h"
#include "support/shortForm.h"

// What is told of machines that no recording shows: told.txt, which says how it is written.

namespace {

constexpr std::int64_t kLater = 1'800'000'000;  // when a card is looked at

// A file of an asset record, which may be missing, and a snapshot or a report.
std::string fileOf(const std::string& text) {
  const std::string start = "\xEF\xBB\xBF?keva\n";
  const std::size_t at = std::min(text.find('{'), text.find("+Snapshot"));
  const std::string asset = blob(start + text.substr(0, at));
  const bool report = text[at] == '{';
  const std::string rest = text.substr(at);
  const std::string second =
      report ? zlibStream("<plist><array>" + elementsOf(rest) + "</array></plist>")
             : blob(start + rest);
  return huxFile(asset + second,
                 "[H]\ncount=2\nsnapshotcount=" + std::to_string(report ? 0 : 1) +
                     "\n[0]\ntype=assetinfo\noffset=0\nlength=" + std::to_string(asset.size()) +
                     "\n[1]\ntype=" + (report ? "customdata" : "snapshot") +
                     "\noffset=" + std::to_string(asset.size()) +
                     "\nlength=" + std::to_string(second.size()) + "\n");
}

machine::Description machineOf(const std::string& kind, const std::string& text) {
  using machine::Source;
  if (kind != "file") return described(kind == "debug" ? Source::Debug : Source::Snapshot, text);
  FakeHost host;
  auto machine = machine::describe(*huxread::Container::parse(fileOf(text)), host);
  EXPECT_TRUE(machine) << machine.error().message << "\n" << text;
  return machine ? *machine : machine::Description(Source::Debug);
}

// The rows of a table as rows.h has them.
std::string rowsOf(const machine::Description& machine, const std::string& table) {
  const std::size_t place = machine::tableAt(table);
  std::string lines = machine[place].recorded ? "" : "no ";
  if (machine[place].rows.empty()) return lines + table + "\n";
  for (const machine::Row& row : machine[place].rows) {
    std::string known;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (!machine::isKnown(row[i])) continue;
      known += known.empty() ? " " : " | ";
      known.append(machine::kTables[place].columns[i].name) += "=" + machine::valueText(row[i]);
    }
    lines.append(table).append(":").append(known).append("\n");
  }
  return lines;
}

// The table of users in so many columns.
std::string grid(const machine::Description& machine, std::size_t width) {
  const std::size_t place = machine::tableAt("users");
  std::vector<std::string> names;
  for (const auto& column : machine::kTables[place].columns) names.emplace_back(column.name);
  const show::Grid grid(names, machine[place].rows, width);
  std::string text = grid.header();
  for (const machine::Row& row : machine[place].rows) text += grid.row(row);
  return text;
}

std::string found(const machine::Description& machine, const std::string& term) {
  std::string text;
  for (const inspect::Match& match : inspect::search(machine, term)) {
    text.append(" ").append(match.column->name) += "=" + match.value;
  }
  return term + ":" + text + "\n";
}

std::string valuesOf(const machine::Description& machine, const std::string& name) {
  const auto values = inspect::lookUp(machine, name);
  return name + ": " + (values ? show::joined(*values, " | ") : values.error().message) + "\n";
}

// The second machine stands behind "=> " and its kind.
std::string changes(const machine::Description& before, const std::string& second) {
  const std::size_t end = second.find('\n');
  const auto after = machineOf(second.substr(3, end - 3), second.substr(end));
  const auto compared = inspect::compare(before, after, {});
  return show::render(show::changeLines(compared.changes), 80, false) +
         (compared.sameMachine ? "" : "another machine\n");
}

// What the words of a heading ask for.
std::string told(const std::string& heading, const std::string& text) {
  std::istringstream words(heading);
  std::string kind;
  words >> kind;
  const std::size_t second = std::min(text.find("=> "), text.size());
  const machine::Description machine = machineOf(kind, text.substr(0, second));
  std::vector<std::string> remarks;
  for (const auto& remark : inspect::findRemarks(machine)) remarks.push_back(remark.text);
  std::string all;
  for (std::string word, term; words >> word;) {
    if (word == "card")
      all += show::card(machine, "aA0_-+./:,@%zZ9é.hux", remarks, kLater, {});
    else if (word == "findings")
      for (const std::string& remark : remarks) all += remark + "\n";
    else if (word == "gaps")
      for (const auto& gap : inspect::findGaps(machine)) all += gap.text + "\n";
    else if (word == "changes")
      all += changes(machine, text.substr(second));
    else if (word == "find" || word == "get")
      for (std::istringstream terms(text.substr(second + 3)); std::getline(terms, term);)
        all += word == "get" ? valuesOf(machine, term) : found(machine, term);
    else if (word.find_first_not_of("0123456789") == std::string::npos)
      all += grid(machine, std::stoul(word));
    else
      all += rowsOf(machine, word);
  }
  return all;
}

std::string rebuilt(const std::string& golden) {
  std::istringstream lines(golden + "\n");
  std::string all;
  std::string heading;
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() && !text.empty()) {
      std::istringstream outcome(told(heading, text));
      for (std::string out; std::getline(outcome, out);)
        all += out.empty() ? ">\n" : "> " + out + "\n";
      text.clear();
    }
    if (line.starts_with('>')) continue;
    all += line + "\n";
    if (line.starts_with('[') && text.empty())
      heading = line.substr(1, line.size() - 2);
    else if (!line.empty() && !line.starts_with('#'))
      text += line + "\n";
  }
  all.pop_back();  // behind the last paragraph
  return all;
}

}  // namespace

TEST(GoldenTold, IsWhatAMachineSays) {
  const std::string file = PROJECT_FOLDER "/tests/golden/told.txt";
  expectGolden("told", file, rebuilt(fileText(file)));
}
