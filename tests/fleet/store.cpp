#include "fleet/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/isoTime.h"
#include "fleet/query.h"
#include "inspect/madeUp.h"
#include "support/workingFolder.h"

using fleet::Scan;
using fleet::Statement;
using fleet::Store;
using machine::columnAt;
using testing::ElementsAre;

namespace {

struct Visit {
  const char* file;
  const char* serial;  // "" for none
  const char* uuid;
  const char* time;
};

Scan scanOf(const Visit& visit) {
  machine::Description machine(machine::Source::Snapshot);
  put(machine, "machine",
      {
          {"source", "snapshot"}
  });
  machine::Row& row = machine[machine::tableAt("machine")].rows[0];
  const auto set = [&row](const char* name, const char* value) {
    if (*value != '\0') row[columnAt("machine", name)] = std::string(value);
    return row[columnAt("machine", name)];
  };
  const machine::Value serial = set("serial", visit.serial);
  const machine::Value uuid = set("uuid", visit.uuid);
  set("scanned_at", visit.time);
  const std::string bytes = std::string("bytes of ") + visit.file;
  return {visit.file,
          bytes,
          fleet::digestOf(bytes),
          machine::isKnown(serial) ? serial : uuid,
          unixSeconds(visit.time),
          machine,
          {}};
}

std::vector<std::string> answer(Store& store, const std::string& query) {
  std::vector<std::string> texts;
  auto statement = store.database().prepare(query);
  EXPECT_TRUE(statement) << statement.error().message;
  while (statement && statement->step() == Statement::Step::Row) {
    texts.emplace_back(statement->text(0));
  }
  return texts;
}

void add(Store& store, const Scan& scan) {
  EXPECT_TRUE(store.add(store.prepare(scan))) << scan.file;
}

class FleetStore : public WorkingFolder {
 protected:
  static Store open() {
    auto store = Store::open("fleet.db");
    EXPECT_TRUE(store) << store.error().message;
    return std::move(*store);
  }
};

}  // namespace

TEST_F(FleetStore, LatestScanIsByInstantAndByMachine) {
  constexpr Visit kVisits[] = {
      {"noon in Tokyo",   "A", "U1", "2026-05-01T12:00:00+09:00"},
      {"eight in Berlin", "A", "U1", "2026-05-01T08:00:00+02:00"}, // three hours later
      {"no time",         "A", "U1", ""                         },
      {"first of two",    "",  "U2", "2026-05-01T08:00:00Z"     },
      {"second of two",   "",  "U2", "2026-05-01T10:00:00+02:00"},
      {"nobody",          "",  "",   "2026-05-01T08:00:00Z"     },
      {"nobody else",     "",  "",   ""                         },
      {"no time, B",      "B", "",   "noon"                     },
      {"no time, B too",  "B", "",   ""                         },
  };
  Store store = open();
  for (const Visit& visit : kVisits) add(store, scanOf(visit));
  const auto latest =
      ElementsAre("eight in Berlin", "second of two", "nobody", "nobody else", "no time, B too");
  EXPECT_THAT(answer(store, "SELECT file FROM machine_now JOIN _scans USING (file) ORDER BY id"),
              latest);
  EXPECT_THAT(answer(store, "SELECT count(*) FROM machine"), ElementsAre("9"));
}

// Who can choose a file's bytes can make two with one digest, and rows with one hash.
TEST_F(FleetStore, EqualDigestsAndHashesDoNotMixUpWhatDiffers) {
  const auto collide = [](Store& store, Scan scan, const char* version) {
    put(scan.machine, "software",
        {
            {"name",    "Safari"},
            {"version", version }
    });
    scan.digest = "d";
    Store::Prepared prepared = store.prepare(scan);
    for (auto& key : prepared.keys[machine::tableAt("software")].keys) key.hash = 7;
    return store.add(prepared);
  };
  const char* versions[] = {"15", "16", "15"};
  {
    Store store = open();
    EXPECT_TRUE(collide(store, scanOf({"a", "A", "", ""}), versions[0]));
    EXPECT_TRUE(collide(store, scanOf({"b", "B", "", ""}), versions[1]));
    EXPECT_TRUE(store.finish());
  }
  Store store = open();  // which remembers no row
  EXPECT_TRUE(store.mayKnow("d"));
  EXPECT_TRUE(store.knows("d", "bytes of b"));
  EXPECT_FALSE(store.knows("d", "bytes of c"));
  EXPECT_TRUE(collide(store, scanOf({"c", "C", "", ""}), versions[2]));
  EXPECT_FALSE(collide(store, scanOf({"c", "D", "", ""}), versions[1])) << "the bytes are known";
  EXPECT_THAT(answer(store, "SELECT serial || version FROM software ORDER BY 1"),
              ElementsAre("A15", "B16", "C15"));
  EXPECT_THAT(answer(store, "SELECT count(*) FROM _software_rows"), ElementsAre("2"));
}

TEST_F(FleetStore, KeepsWhatIsKnownAsItIs) {
  Store store = open();
  Scan scan = scanOf({"a", "A", "", ""});
  put(scan.machine, "usb",
      {
          {"serial",   "0012"},
          {"hub",      true  },
          {"power_ma", 500   }
  });
  put(scan.machine, "usb",
      {
          {"name", "\xC3\xA9 \"x\"\n"}
  });
  scan.machine[machine::tableAt("usb")].rows[1][columnAt("usb", "speed_mbit_s")] = 1.5;
  scan.findings.push_back(inspect::finding("HUX201", "off"));
  add(store, scan);
  EXPECT_THAT(answer(store,
                     "SELECT quote(machine_serial) || quote(serial) || quote(name) ||"
                     " quote(hub) || quote(power_ma) || quote(speed_mbit_s) FROM usb"),
              ElementsAre("'A''0012'NULL1500NULL", "'A'NULL'\xC3\xA9 \"x\"\n'NULLNULL1.5"));
  EXPECT_THAT(answer(store, "SELECT serial || id || severity || text FROM findings_now"),
              ElementsAre("AHUX201remarkoff"));
}
