#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "fleet/clickhouse.h"
#include "fleet/overview.h"
#include "fleet/scan.h"
#include "fleet/store.h"
#include "golden/machine.h"
#include "inspect/compare.h"
#include "inspect/findings.h"
#include "page/fleet.h"
#include "page/report.h"
#include "show/changes.h"
#include "show/json.h"
#include "show/styledLines.h"
#include "support/fakeHost.h"
#include "support/workingFolder.h"

// The pages about more than one machine.

namespace {

constexpr std::int64_t kNow = 1'552'723'200;  // 2019-03-16 08:00:00 UTC
constexpr std::int64_t kDay = 86400;

// A Mac like the first one, but with another name, age and share of free space. Each stands beside
// a border of the groups that a fleet is divided into.
struct Variant {
  double days;
  double freeShare;
};
constexpr Variant kVariants[] = {
    {-1,   0.0499},
    {0.99, 0.05  },
    {1,    0.0999},
    {6.99, 0.1   },
    {7,    0.2499},
    {29,   0.25  },
    {30,   0.4999},
    {31,   0.5   },
    {89,   0.7499},
    {90,   0.75  },
    {364,  1     },
    {365,  0     },
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

void vary(fleet::Scan& scan, int number, const Variant& variant) {
  const auto set = [&](const char* table, const char* column, machine::Value value) {
    for (machine::Row& row : scan.machine[machine::tableAt(table)].rows) {
      if (row[machine::columnAt(table, column)].index() == value.index()) {
        row[machine::columnAt(table, column)] = value;
      }
    }
  };
  const std::string name = "tower " + std::to_string(number);
  scan.file = scan.bytes = name;
  scan.digest = fleet::digestOf(name);
  scan.owner = name;
  scan.scannedUnix = kNow - static_cast<std::int64_t>(variant.days * kDay);
  set("machine", "serial", name);
  set("machine", "name", name);
  set("machine", "memory_mb", std::int64_t{4096} << number / 3);
  set("machine", "os_version", "10." + std::to_string(6 + number / 4) + ".8");
  set("software", "version", "4." + std::to_string(number * 7 % 5));
  set("volumes", "size_bytes", std::int64_t{1'000'000'000});
  set("volumes", "free_bytes", static_cast<std::int64_t>(1e9 * variant.freeShare));
  scan.machine[machine::tableAt("machine")]
      .rows[0][machine::columnAt("machine", "integrity_protection")] = number % 2 == 0;
  scan.findings = inspect::findRemarks(scan.machine);
}

// What a server takes in of both files of a machine.
std::string statementsFor(Machine machine) {
  fleet::ClickHouseInserts inserts;
  std::string statements = fleet::clickHouseTables();
  for (const bool debug : {false, true}) {
    machine.debug = debug;
    statements += inserts.add(fleet::clickHouseRows(scanned(machine)));
  }
  return statements + inserts.finish();
}

}  // namespace

TEST_F(GoldenPages, ShowAFleet) {
  auto store = fleet::Store::open("fleet.db");
  ASSERT_TRUE(store) << store.error().message;
  for (const Machine& machine : distinctMachines()) {
    fleet::Scan scan = scanned(machine);
    scan.bytes = machine.name;
    EXPECT_TRUE(store->add(store->prepare(scan)));
    if (std::string(machine.name) == "virtual") {
      expectGolden("fleet", goldenPage("fleet", ".sql"), statementsFor(machine));
    }
    if (std::string(machine.name) != "tower") continue;
    int number = 0;
    for (const Variant& variant : kVariants) {
      vary(scan, ++number, variant);
      EXPECT_TRUE(store->add(store->prepare(scan)));
    }
  }
  ASSERT_TRUE(store->finish());
  const auto overview = fleet::overviewOf(store->database(), kNow);
  ASSERT_TRUE(overview) << overview.error().message;
  expectGolden("fleet", goldenPage("fleet"), page::fleet(*overview, "huxutil"));
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
