#include "fleet/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "base/isoTime.h"
#include "fleet/query.h"
#include "support/rows.h"
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
  const auto with = [](const char* column, std::string_view value) {
    return value.empty() ? "" : " | " + std::string(column) + "=" + std::string(value);
  };
  const auto machine = described(machine::Source::Snapshot,
                                 "machine: source=snapshot" + with("serial", visit.serial) +
                                     with("uuid", visit.uuid) + with("scanned_at", visit.time));
  const machine::Value& serial = machine.machine(columnAt("machine", "serial"));
  const machine::Value& uuid = machine.machine(columnAt("machine", "uuid"));
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

// A week of a machine: some of its rows it shares with others, some change.
Scan weekOf(int machine, int week) {
  const std::string number = std::to_string(10 + machine);
  const std::string file = number + "-" + std::to_string(week);
  const std::string time = "2026-05-0" + std::to_string(week + 1) + "T08:00:00Z";
  Scan scan = scanOf({file.c_str(), number.c_str(), "", time.c_str()});
  for (int i = 0; i < 5; ++i) {
    addRows(scan.machine, "software: name=App " + std::to_string(i) +
                              " | version=" + std::to_string(i < machine % 5 ? week : machine));
  }
  scan.findings.push_back(inspect::finding("HUX201", number));
  return scan;
}

// Everything that is kept of them.
std::vector<std::string> contentOf(Store& store) {
  std::vector<std::string> all;
  for (const char* query :
       {"SELECT file || quote(serial) || quote(scanned_at) || latest || file_bytes FROM scans"
        " ORDER BY file",
        "SELECT file || name || version FROM software ORDER BY file, name",
        "SELECT file || name || version FROM software_now ORDER BY file, name",
        "SELECT name || version || installations FROM software_spread ORDER BY 1",
        "SELECT name || version || _now FROM _software_rows ORDER BY 1",
        "SELECT file || id || text FROM findings ORDER BY 1"}) {
    const std::vector<std::string> answers = answer(store, query);
    all.insert(all.end(), answers.begin(), answers.end());
  }
  return all;
}

constexpr int kMachines = 40;
constexpr int kWeeks = 3;

void addFleet(Store& store) {
  for (int i = 0; i < kMachines * kWeeks; ++i) {
    // The second week comes last.
    store.add(store.prepare(weekOf(i % kMachines, i / kMachines * 2 % kWeeks)));
  }
  store.finish();
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
  const auto collide = [](Store& store, Scan scan, const std::string& version) {
    addRows(scan.machine, "software: name=Safari | version=" + version);
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

TEST_F(FleetStore, CountsWhatTheLatestScansHave) {
  Store store = open();
  add(store, weekOf(1, 0));
  add(store, weekOf(2, 0));                                   // has its first application, too
  for (const int week : {2, 1}) add(store, weekOf(1, week));  // its first application changes
  ASSERT_TRUE(store.finish());
  EXPECT_THAT(answer(store,
                     "SELECT name || ' ' || version || ': ' || installations FROM software_spread"
                     " WHERE name < 'App 2' ORDER BY 1"),
              ElementsAre("App 0 0: 1", "App 0 2: 1", "App 1 0: 1", "App 1 1: 1"));
}

TEST_F(FleetStore, TellsRowsApartByEveryKindOfValue) {
  Store store = open();
  Scan scan = scanOf({"one", "A", "", ""});
  addRows(scan.machine,
          "software: name=A\nsoftware: name=B\nsoftware: name=B | is_64bit=true\n"
          "software: name=B | is_64bit=false\ndisks: size_bytes=1\ndisks: size_bytes=2\n"
          "displays: refresh_hz=59.94\ndisplays: refresh_hz=60\n");
  add(store, scan);
  ASSERT_TRUE(store.finish());
  EXPECT_THAT(answer(store,
                     "SELECT name || ifnull(is_64bit, '') FROM software UNION ALL "
                     "SELECT size_bytes FROM disks UNION ALL SELECT refresh_hz FROM displays"),
              ElementsAre("A", "B", "B1", "B0", "1", "2", "59.94", "60.0"));
}

TEST_F(FleetStore, KeepsWhatIsKnownAsItIs) {
  Store store = open();
  Scan scan = scanOf({"a", "A", "", ""});
  addRows(scan.machine, "usb: serial=0012 | hub=true | power_ma=500\nusb: speed_mbit_s=1.5");
  lastValue(scan.machine, "usb", "name") = "\xC3\xA9 \"x\"\n";
  scan.findings.push_back(inspect::finding("HUX201", "off"));
  add(store, scan);
  EXPECT_THAT(answer(store,
                     "SELECT quote(machine_serial) || quote(serial) || quote(name) ||"
                     " quote(hub) || quote(power_ma) || quote(speed_mbit_s) FROM usb"),
              ElementsAre("'A''0012'NULL1500NULL", "'A'NULL'\xC3\xA9 \"x\"\n'NULLNULL1.5"));
  EXPECT_THAT(answer(store, "SELECT substr(not_recorded, 1, 30) FROM scans"),
              ElementsAre("memory, disks, volumes, adapte"));
  EXPECT_THAT(answer(store, "SELECT serial || id || severity || text FROM findings_now"),
              ElementsAre("AHUX201remarkoff"));
}

TEST_F(FleetStore, StoresARowOnceAlsoWhenOpenedAnew) {
  {
    Store store = open();
    addFleet(store);
  }
  Store store = open();
  const char* const rows = "SELECT count(*) FROM _software_rows";
  const std::vector<std::string> before = answer(store, rows);
  Scan again = weekOf(3, 1);
  again.file = again.bytes = "another file";
  again.digest = fleet::digestOf(again.bytes);
  add(store, again);
  ASSERT_TRUE(store.finish());
  EXPECT_EQ(answer(store, rows), before);
}

TEST_F(FleetStore, IsInTheFileOfThatName) {
  for (const std::string name : {":memory:", "file:a.db", "/a.db"}) {
    const std::string path =
        name.starts_with('/') ? std::filesystem::current_path().string() + name : name;
    auto store = Store::open(path);
    ASSERT_TRUE(store) << store.error().message;
    add(*store, weekOf(1, 0));
    ASSERT_TRUE(store->finish());
    EXPECT_GT(std::filesystem::file_size(path), 0U) << path;
  }
}

TEST_F(FleetStore, CannotBeOpenedWithoutATable) {
  ASSERT_TRUE(open().database().run("DROP TABLE _files"));
  const auto store = Store::open("fleet.db");
  ASSERT_FALSE(store);
  EXPECT_EQ(store.error().message, "no such table: _files");
}

TEST_F(FleetStore, TakesNothingInOnceSomethingFailed) {
  Store store = open();
  ASSERT_TRUE(
      store.database().run("CREATE TRIGGER full BEFORE INSERT ON _files WHEN new.scan > 1 "
                           "BEGIN SELECT RAISE(ABORT, 'no room'); END"));
  add(store, weekOf(1, 0));
  EXPECT_FALSE(store.add(store.prepare(weekOf(2, 0))));
  ASSERT_TRUE(store.problem());
  EXPECT_EQ(store.problem()->message, "no room");
  EXPECT_FALSE(store.add(store.prepare(weekOf(3, 0))));
  EXPECT_FALSE(store.finish());
  EXPECT_EQ(store.problem()->message, "no room");
}

// Neither files nor what the library remembers of them.
TEST_F(FleetStore, LeavesNothingOpen) {
  const auto openFiles = [] {
    return std::distance(std::filesystem::directory_iterator("/dev/fd"), {});
  };
  const auto before = openFiles();
  {
    Store store = open();
    addFleet(store);
    auto reader = fleet::openForReading("fleet.db");
    ASSERT_TRUE(reader) << reader.error().message;
    EXPECT_EQ(reader->number("SELECT count(*) FROM entries"), 0);
  }
  EXPECT_EQ(openFiles(), before);
}

TEST_F(FleetStore, IsReadAsItWasBeforeALoadThatWasKilled) {
  {
    Store store = open();
    addFleet(store);
  }
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    Store store = open();
    const bool changed = store.database().run(  // more than is held in memory
        "PRAGMA cache_size = 1; BEGIN; UPDATE _software_rows SET version = zeroblob(10000)");
    _exit(changed ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_EQ(status, 0);
  ASSERT_TRUE(std::filesystem::exists("fleet.db-journal"));
  auto reader = fleet::openForReading("fleet.db");
  ASSERT_TRUE(reader) << reader.error().message;
  EXPECT_EQ(reader->number("SELECT count(*) FROM _software_rows WHERE length(version) > 9"), 0);
}

TEST_F(FleetStore, AnswersViewsOfItsOwners) {
  {
    Store store = open();
    addFleet(store);
    ASSERT_TRUE(
        store.database().run("CREATE VIEW newest AS SELECT max(version_key(version)) FROM software;"
                             "CREATE VIEW all_entries AS SELECT * FROM entries;"
                             "CREATE VIEW settings AS SELECT * FROM pragma_compile_options"));
  }
  auto reader = fleet::openForReading("fleet.db");
  ASSERT_TRUE(reader) << reader.error().message;
  EXPECT_TRUE(reader->prepare("SELECT * FROM newest"));
  EXPECT_TRUE(reader->prepare("SELECT * FROM all_entries"));
  if (reader->number("SELECT sqlite_version() > '3.31'") == 0) return;  // knows no such views
  EXPECT_FALSE(reader->prepare("SELECT * FROM settings")) << "what may have effects";
}

TEST_F(FleetStore, SaysWhenAnotherWritesToIt) {
  Store store = open();
  ASSERT_TRUE(store.finish());
  auto database = fleet::Database::open("fleet.db", fleet::Database::Access::Write);
  ASSERT_TRUE(database && database->run("PRAGMA busy_timeout = 0"));
  ASSERT_TRUE(store.database().run("BEGIN EXCLUSIVE"));
  EXPECT_FALSE(database->run("BEGIN EXCLUSIVE"));
  EXPECT_TRUE(database->busy());
  EXPECT_FALSE(database->run("nonsense"));
  EXPECT_FALSE(database->busy());
}

// In batches of some scans, so that a kill meets the middle of one, the end of one and what is
// between.
TEST_F(FleetStore, KilledAtAnyMomentItHoldsTheSameInTheEnd) {
  auto undisturbed = Store::open("");
  ASSERT_TRUE(undisturbed);
  addFleet(*undisturbed);
  const auto load = [] {
    Store::Batch batch;
    batch.bytes = 7 * std::string_view("bytes of 10-0").size();
    auto store = Store::open("fleet.db", batch);
    if (store) addFleet(*store);
  };
  std::minstd_rand random(1);
  std::size_t partly = 0;
  for (int kill = 0; kill < 50; ++kill) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      load();
      _exit(0);
    }
    usleep(static_cast<useconds_t>(random() % 80'000));
    ::kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    auto reader = fleet::openForReading("fleet.db");
    if (!reader) continue;
    const auto scans = static_cast<std::size_t>(reader->number("SELECT count(*) FROM scans"));
    if (scans == kMachines * kWeeks) {  // once more from the beginning
      std::filesystem::remove("fleet.db");
      continue;
    }
    EXPECT_EQ(scans % 7, 0U) << "half a batch";
    partly += scans > 0 ? 1 : 0;
  }
  EXPECT_GT(partly, 0U) << "no kill met a load that was on its way";
  load();
  Store store = open();
  EXPECT_EQ(contentOf(store), contentOf(*undisturbed));
}

// What asks for a machine, or for an application, must not go through all that there is.
TEST_F(FleetStore, BeginsWithWhatAQueryNames) {
  Store store = open();
  addFleet(store);
  for (const std::string condition : {"serial = '17'", "machine_serial = '17'", "name = 'App 1'"}) {
    auto plan = store.database().prepare("EXPLAIN QUERY PLAN SELECT * FROM software_now WHERE " +
                                         condition);
    ASSERT_TRUE(plan) << plan.error().message;
    while (plan->step() == Statement::Step::Row) {
      EXPECT_THAT(std::string(plan->text(3)), testing::StartsWith("SEARCH")) << condition;
    }
  }
}
