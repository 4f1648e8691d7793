#include "inspect/compare.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/rows.h"

// Rows are told apart by what identifies them, and only what both files know counts.

using inspect::Change;
using machine::Description;
using machine::Source;

namespace {

// "-disks A; users mara.uid"
std::string shown(const std::vector<Change>& changes) {
  static constexpr const char* kSigns[] = {"+", "-", ""};
  std::string text;
  for (const Change& change : changes) {
    text += (text.empty() ? "" : "; ") + std::string(kSigns[static_cast<int>(change.kind)]) +
            std::string(change.table->name) + " " + change.row;
    if (change.column != nullptr) text += "." + std::string(change.column->name);
  }
  return text;
}

std::string compared(const char* before, const char* after,
                     const inspect::CompareOptions& options = {},
                     Source source = Source::Snapshot) {
  const Description earlier = described(Source::Snapshot, before);
  const Description later = described(source, after);
  return shown(inspect::compare(earlier, later, options).changes);
}

}  // namespace

TEST(Compare, TellsRowsByWhatIdentifiesThem) {
  EXPECT_EQ(compared("users: name=a | uid=1\nusers: name=b | uid=2",
                     "users: name=b | uid=2\nusers: name=a | uid=1"),
            "")
      << "another order";
  EXPECT_EQ(compared("software: path=/A | name=A | version=1\nsoftware: path=/B | name=B",
                     "software: path=/A | name=A | version=2\nsoftware: path=/C/B | name=B"),
            "software A.version; -software B; +software B")
      << "an update in its place, and one that moved";
  EXPECT_EQ(compared(R"(disks: model=M | internal=true
                        usb: name=Hub | version=1
                        usb: name=Hub | vendor_id=7 | version=2)",
                     R"(disks: model=M | serial=S | internal=false
                        usb: name=Hub | vendor_id=7 | version=2
                        usb: name=Hub | vendor_id=8 | version=1)"),
            "disks M.internal")
      << "one file knows less of what identifies";
  EXPECT_EQ(compared("disks: model=M | serial=S", "disks: model=M | serial=T"),
            "-disks M; +disks M");
  EXPECT_EQ(compared("software: name=A | version=1\nsoftware: name=A | version=2",
                     "software: name=A | version=3\nsoftware: name=A | version=1"),
            "software A.version")
      << "one of several with one name";
  EXPECT_EQ(compared("memory: size_mb=8\nmemory: size_mb=8\nmemory: size_mb=4",
                     "memory: size_mb=4\nmemory: size_mb=8"),
            "-memory 2")
      << "rows without a name";
  EXPECT_EQ(compared("users: name=a | uid=1\nbattery: model=B", "users: name=a | shell=sh"), "")
      << "what either does not know";
  EXPECT_EQ(compared(R"(volumes: uuid=U | name=A | mount_point=/A
                        volumes: uuid=W | mount_point=/B | writable=true
                        volumes: uuid=W | mount_point=/C | writable=true
                        volumes: uuid=X | mount_point=/)",
                     R"(volumes: uuid=W | mount_point=/C | writable=false
                        volumes: uuid=W | mount_point=/B | writable=false
                        volumes: uuid=U | name=D | mount_point=/D
                        volumes: uuid=Y | mount_point=/)"),
            "volumes A.mount_point; volumes A.name; volumes /B.writable; volumes /C.writable; "
            "volumes /.uuid");
}

TEST(Compare, LeavesOutWhatChangesByItselfAndWhatIsNamed) {
  const char* const before = R"(
      volumes: name=V | free_bytes=1
      processes: name=p
      volumes: name=I | disk_model=Disk Image)";
  const char* const after = "volumes: name=V | free_bytes=2\nprocesses: name=q";
  EXPECT_EQ(compared(before, after), "");
  EXPECT_EQ(compared(before, after, {true, {}}),
            "volumes V.free_bytes; -volumes I; -processes p; +processes q");
  const inspect::CompareOptions named = {
      false, {"users", "disks.firmware"}
  };
  EXPECT_EQ(compared("users: name=a\ndisks: model=M | firmware=1 | kind=ssd",
                     "users: name=b\ndisks: model=M | firmware=2 | kind=hdd", named),
            "disks M.kind");
}

TEST(Compare, KnowsTheRulesOfASnapshot) {
  EXPECT_EQ(compared(R"(firewall: kind=service | name=F | setting=on
                        software: name=A
                        software: name=Gone
                        memory: used=false)",
                     R"(firewall: kind=service | name=F | setting=off
                        software: path=/1 | name=A
                        software: path=/2 | name=A
                        software: path=/3 | name=New
                        memory: slot=DIMM1)",
                     {}, Source::Debug),
            "-software Gone; +software New");
}

// With a step for each pair of rows this would take minutes.
TEST(Compare, FindsOneAmongManyThatAreEqual) {
  for (const std::string table : {"memory", "users"}) {
    Description before = described(Source::Snapshot, table + (table == "users" ? ": name=a" : ":"));
    machine::TableData& data = before[machine::tableAt(table)];
    data.rows.resize(30000, data.rows.front());
    Description after = before;
    data.rows.push_back(data.rows.front());
    EXPECT_EQ(inspect::compare(before, after, {}).changes.size(), 1U);
  }
}

TEST(Compare, KnowsTheMachineAndTheSchema) {
  const auto same = [](const char* before, const char* after) {
    return inspect::compare(described(Source::Snapshot, before), described(Source::Debug, after),
                            {})
        .sameMachine;
  };
  EXPECT_TRUE(same("machine: serial=S | uuid=U", "machine: serial=S | uuid=V"));
  EXPECT_FALSE(same("machine: serial=S | uuid=U", "machine: serial=T | uuid=U"));
  EXPECT_FALSE(same("machine: serial=S | uuid=U", "machine: uuid=V"));
  EXPECT_TRUE(same("machine: name=a", "machine: serial=S"));
  for (const char* name : {"users", "users.uid"}) EXPECT_TRUE(inspect::isInSchema(name)) << name;
  for (const char* name : {"", ".", "uid", "users.", "users.walls", "users.uid."}) {
    EXPECT_FALSE(inspect::isInSchema(name)) << name;
  }
}
