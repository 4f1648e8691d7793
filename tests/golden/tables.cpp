#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "golden/machine.h"
#include "machine/cleanText.h"
#include "machine/schema.h"
#include "show/json.h"
#include "support/fileText.h"

// What the tables say of each machine by either kind of file.

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

class GoldenTables : public testing::TestWithParam<Machine> {};

}  // namespace

TEST_P(GoldenTables, AreWhatAFileSays) {
  const Machine& machine = GetParam();
  const std::string file = goldenTablesFile(machine);
  const std::string scanned = show::json(scannedTables(machine), std::string(machine.name) + ".hux",
                                         show::JsonLayout::Lines);
  if (isToBeRefreshed(machine)) {
    std::ofstream(file, std::ios::binary) << scanned;
    GTEST_SKIP() << "wrote " << file;
  }
  const std::string golden = fileText(file);
  EXPECT_TRUE(golden == scanned) << difference(golden, scanned)
                                 << "\nIf this is wanted: scripts/refresh-golden " << machine.name;
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
