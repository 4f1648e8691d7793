#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/formatString.h"
#include "base/isoTime.h"
#include "fleet/clickhouse.h"
#include "fleet/overview.h"
#include "fleet/scan.h"
#include "fleet/store.h"
#include "golden/machine.h"
#include "inspect/compare.h"
#include "inspect/findings.h"
#include "page/fleet.h"
#include "page/report.h"
#include "show/card.h"
#include "show/changes.h"
#include "show/json.h"
#include "show/styledLines.h"
#include "support/fakeHost.h"
#include "support/fileText.h"
#include "support/rows.h"
#include "support/workingFolder.h"

// The pages about more than one machine.

namespace {

constexpr std::int64_t kNow = 1'552'723'200;  // 2019-03-16 08:00:00 UTC

// A Mac like the tower, but with another name, age and free space of 10'000 bytes. Each stands
// beside a border of the groups that a fleet is divided into.
struct Variant {
  const char* time;
  std::int64_t free;
};
constexpr Variant kVariants[] = {
    {"2019-03-17T08:00:00Z", 499   },
    {"2019-03-15T08:00:01Z", 500   },
    {"2019-03-15T08:00:00Z", 999   },
    {"2019-03-09T08:00:01Z", 1'000 },
    {"2019-03-09T08:00:00Z", 2'499 },
    {"2019-02-14T08:00:01Z", 2'500 },
    {"2019-02-14T08:00:00Z", 4'999 },
    {"2018-12-16T08:00:01Z", 5'000 },
    {"2018-12-16T08:00:00Z", 7'499 },
    {"2018-03-16T08:00:01Z", 7'500 },
    {"2018-03-16T08:00:00Z", 10'000},
    {"",                     0     },
};

fleet::Scan scanned(const Machine& machine) {
  std::optional<fleet::Scan> result;
  scan(machine, [&](const huxread::Container& file, const std::string& bytes) {
    FakeHost host;
    result = *fleet::readScan(machine.name, machine.name, file, host);
    result->bytes = bytes;  // how many there are, and so their digest, zlib decides
  });
  return *result;
}

class GoldenPages : public WorkingFolder {};

void addSoftware(fleet::Scan& scan, const std::string& name) {
  const std::size_t software = machine::tableAt("software");
  machine::Row row(machine::kTables[software].columns.size());
  row[machine::columnAt("software", "name")] = name;
  scan.machine[software].rows.push_back(row);
}

void vary(fleet::Scan& scan, int number, const Variant& variant) {
  const auto set = [&](const char* table, const char* column, machine::Value value) {
    for (machine::Row& row : scan.machine[machine::tableAt(table)].rows) {
      if (row[machine::columnAt(table, column)].index() == value.index()) {
        row[machine::columnAt(table, column)] = value;
      }
    }
  };
  const std::string name = "tower " + std::to_string(number);
  const int version = number % 96;  // so that there are a hundred with those of the others
  scan.file = scan.bytes = name + variant.time;
  scan.digest = fleet::digestOf(scan.bytes);
  scan.owner = name;
  scan.scannedUnix = unixSeconds(variant.time);
  set("machine", "scanned_at", variant.time);
  set("machine", "serial", name);
  set("machine", "name", number == 3 ? name + std::string(60, 'w') : name);
  set("machine", "memory_mb", std::int64_t{1} << number % 9);
  set("machine", "os_version", formatString("10.%d.%d", version % 13, version / 13));
  set("software", "version", "4." + std::to_string(number * 7 % 5));
  set("volumes", "mount_point", "/");
  set("volumes", "size_bytes", variant.free == 0 ? std::int64_t{1} : std::int64_t{10'000});
  set("volumes", "free_bytes", variant.free);
  // What 198 of 200 machines have is on nearly all, and so is what 199 have.
  std::vector<machine::Row>& software = scan.machine[machine::tableAt("software")].rows;
  if (number <= 2) software.resize(software.size() - static_cast<std::size_t>(3 - number));
  for (int i = 0; i < 6; ++i) addSoftware(scan, "Tool " + std::to_string(number * 6 + i));
  machine::Row& row = scan.machine[machine::tableAt("machine")].rows[0];
  row[machine::columnAt("machine", "integrity_protection")] = number % 10 == 0;
  if (number == 2) {
    for (const char* column :
         {"name", "netbios_name", "local_hostname", "model_name", "model_id"}) {
      row[machine::columnAt("machine", column)] = {};
    }
  }
  if (number == 4) scan.machine.setLacksItems();
  scan.findings = inspect::findRemarks(scan.machine);
}

// A machine of which a text file of rows says all.
machine::Description rowsOf(const std::string& name) {
  return described(machine::Source::Snapshot, fileText(PROJECT_FOLDER "/tests/golden/" + name));
}

// What a server takes in of both files of a machine.
std::string statementsFor(Machine machine) {
  fleet::ClickHouseInserts inserts;
  std::string statements = fleet::clickHouseTables();
  for (const bool debug : {false, true}) {
    machine.debug = debug;
    fleet::Scan scan = scanned(machine);
    if (debug) scan.machine[0].rows[0][machine::columnAt("machine", "serial")] = "V1";
    statements += inserts.add(fleet::clickHouseRows(scan));
  }
  return statements + inserts.finish();
}

}  // namespace

// Two hundred machines: there shares begin to be "<1 %" and "99 %", and lists are cut.
TEST_F(GoldenPages, ShowAFleet) {
  auto store = fleet::Store::open("fleet.db");
  ASSERT_TRUE(store) << store.error().message;
  const auto add = [&store](fleet::Scan scan) { EXPECT_TRUE(store->add(store->prepare(scan))); };
  for (const Machine& machine : distinctMachines()) {
    fleet::Scan scan = scanned(machine);
    scan.bytes = machine.name;
    for (int i = 0; i < 101; ++i) addSoftware(scan, "Everywhere " + std::to_string(i));
    add(scan);
    if (std::string(machine.name) != "tower") continue;
    for (int number = 1; number <= 196; ++number) {
      fleet::Scan another = scan;
      const std::string time = formatString("2017-01-01T00:%02d:%02dZ", number / 60, number % 60);
      const auto i = static_cast<std::size_t>(number - 1);
      vary(another, number, i < std::size(kVariants) ? kVariants[i] : Variant{time.c_str(), 1});
      add(another);
    }
    vary(scan, 1, {"2016-01-01T00:00:00Z", 0});
    addSoftware(scan, "What it had");
    add(scan);
  }
  ASSERT_TRUE(store->finish());
  const auto overview = fleet::overviewOf(store->database(), kNow);
  ASSERT_TRUE(overview) << overview.error().message;
  expectGolden("fleet", goldenPage("fleet"), page::fleet(*overview, "huxutil"));
}

// One machine of which nothing is known.
TEST_F(GoldenPages, ShowAFleetOfOne) {
  auto store = fleet::Store::open("");
  ASSERT_TRUE(store) << store.error().message;
  const auto digest = fleet::digestOf("");
  EXPECT_TRUE(store->add(store->prepare({"a.hux", "", digest, {}, {}, rowsOf("unknown.txt"), {}})));
  ASSERT_TRUE(store->finish());
  const auto overview = fleet::overviewOf(store->database(), kNow);
  ASSERT_TRUE(overview) << overview.error().message;
  expectGolden("fleet", goldenPage("fleet-of-one"), page::fleet(*overview, "huxutil"));
}

TEST_F(GoldenPages, AreWhatAServerTakesIn) {
  expectGolden("fleet", goldenPage("fleet", ".sql"), statementsFor(machines()[2]));
}

// Of each table the first row went, the last one came, and numbers in between changed.
TEST_F(GoldenPages, CompareAMachineWithWhatItWas) {
  machine::Description before = scannedTables(distinctMachines().front());
  machine::Description after = before;
  for (std::size_t table = 0; table < machine::kTableCount; ++table) {
    for (machine::Row& row : after[table].rows) {
      for (machine::Value& value : row) {
        if (auto* number = std::get_if<std::int64_t>(&value)) *number += 7;
        if (auto* flag = std::get_if<bool>(&value)) *flag = !*flag;
      }
    }
    if (after[table].rows.size() < 3) continue;
    after[table].rows.erase(after[table].rows.begin());
    before[table].rows.pop_back();
  }
  const inspect::Comparison compared = inspect::compare(before, after, {});
  expectGolden("comparison", goldenPage("comparison"),
               page::comparison({before, "a.hux"}, {after, "b.hux"}, compared, "huxutil"));
  expectGolden("comparison", goldenPage("comparison", ".txt"),
               show::render(show::changeLines(compared.changes), 80, true));
  expectGolden("comparison", goldenPage("comparison", ".json"),
               show::changesArray(compared.changes));
}

TEST_F(GoldenPages, CompareTwoMachines) {
  const machine::Description before = rowsOf("other.txt");
  const machine::Description after = rowsOf("parts.txt");
  const inspect::Comparison compared = inspect::compare(before, after, {});
  EXPECT_FALSE(compared.sameMachine);
  expectGolden("comparison", goldenPage("others"),
               page::comparison({before, "a.hux"}, {after, "b.hux"}, compared, "huxutil"));
}

// As many parts as are drawn, and one more; displays of odd shapes, a worn battery.
TEST_F(GoldenPages, ShowAMachineOfManyParts) {
  const machine::Description machine = rowsOf("parts.txt");
  expectGolden("comparison", goldenPage("parts"), page::report(machine, "parts.hux", "huxutil"));
  expectGolden("comparison", goldenPage("parts", ".txt"),
               show::card(machine, "parts.hux", {}, kNow, {true, 80, true}));
}

// Two files of one scan: what the kinds of file cannot help to state otherwise is left out.
TEST_F(GoldenPages, CompareTheKindsOfFile) {
  std::string text;
  for (Machine machine : distinctMachines()) {
    const machine::Description snapshot = scannedTables(machine);
    machine.debug = true;
    const machine::Description debug = scannedTables(machine);
    const inspect::Comparison compared = inspect::compare(snapshot, debug, {});
    text.append(machine.name).append("\n");
    text += show::render(show::changeLines(compared.changes), 80, false);
  }
  expectGolden("comparison", goldenPage("kinds", ".txt"), text);
}
