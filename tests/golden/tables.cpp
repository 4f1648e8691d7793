#include <gtest/gtest.h>

#include <cstdint>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "golden/machine.h"
#include "machine/cleanText.h"
#include "machine/schema.h"
#include "page/report.h"
#include "show/card.h"
#include "show/json.h"

// What is said of each machine by either kind of file: its tables, its page and its card.

namespace {

// Each machine with its snapshot and with its debug file.
std::vector<Machine> bothKinds() {
  std::vector<Machine> both;
  for (Machine machine : distinctMachines()) {
    both.push_back(machine);
    machine.debug = true;
    both.push_back(machine);
  }
  return both;
}

std::string kindName(const testing::TestParamInfo<Machine>& info) {
  return testName(info) + (info.param.debug ? "Debug" : "");
}

// Numbers that are right when they are 0.
const std::set<std::string_view> kMayBeZero = {
    "performance_cores", "efficiency_cores", "free_bytes",       "power_ma", "pid", "ppid",
    "system_sleep_min",  "disk_sleep_min",   "display_sleep_min"};

// What is wrong with a value that is known; "" for nothing.
std::string wrong(const machine::Column& column, const machine::Value& value) {
  // Words that the profiler has for its own use.
  static const std::regex kToken("(attrib|arch|coreaudio|sp[a-z]+)_.*");
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    return *number > 0 || (*number == 0 && kMayBeZero.contains(column.name)) ? ""
                                                                             : "no such number";
  }
  if (const auto* number = std::get_if<double>(&value)) return *number > 0 ? "" : "no such number";
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return "";
  if (column.secret == machine::Secret::Whole) {
    return text->empty() || machine::cleanText(*text) != *text ? "not clean" : "";
  }
  if (machine::textValue(*text) != value) return "not clean";
  return std::regex_match(*text, kToken) ? "a token" : "";
}

constexpr std::int64_t kLater = 1'800'000'000;  // when the card is looked at

class GoldenTables : public testing::TestWithParam<Machine> {};

}  // namespace

TEST_P(GoldenTables, AreWhatAFileSays) {
  const Machine& machine = GetParam();
  const std::string name = std::string(machine.name) + ".hux";
  const machine::Description tables = scannedTables(machine);
  expectGolden(machine.name, goldenTablesFile(machine),
               show::json(tables, name, show::JsonLayout::Lines));
  const std::string drawn = std::string(machine.name) + (machine.debug ? "-debug" : "");
  expectGolden(machine.name, goldenPage(drawn, ".txt"),
               show::card(tables, name, {}, kLater, {true, 80, true}));
  if (!machine.debug) return;  // a debug file says more
  expectGolden(machine.name, goldenPage(drawn), page::report(tables, name, "huxutil"));
}

TEST_P(GoldenTables, HoldNothingThatIsNotKnown) {
  const machine::Description tables = scannedTables(GetParam());
  for (std::size_t i = 0; i < machine::kTableCount; ++i) {
    const machine::Table& table = machine::kTables[i];
    for (const machine::Row& row : tables[i].rows) {
      ASSERT_EQ(row.size(), table.columns.size()) << table.name;
      bool known = false;
      for (std::size_t at = 0; at < row.size(); ++at) {
        known = known || machine::isKnown(row[at]);
        EXPECT_EQ(wrong(table.columns[at], row[at]), "")
            << table.name << "." << table.columns[at].name << " of "
            << machine::identityOf(table, row) << ": " << machine::textOf(row[at]);
      }
      EXPECT_TRUE(known) << "a row without anything: " << table.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Machines, GoldenTables, testing::ValuesIn(bothKinds()), kindName);
