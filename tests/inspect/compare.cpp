#include "inspect/compare.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

// Rows are told apart by what identifies them, and only what both files know counts.

using inspect::Change;
using machine::Description;
using machine::Source;
using machine::Type;

namespace {

machine::Value valueOf(Type type, const std::string& text) {
  if (type == Type::Flag) return text == "true";
  if (type == Type::Integer) return std::int64_t{std::atoi(text.c_str())};
  return text;
}

// "users,name=a,uid=1; memory": rows, each as its table and what it knows.
Description described(Source source, const std::string& rows) {
  Description machine(source);
  std::istringstream lines(rows);
  for (std::string line; std::getline(lines >> std::ws, line, ';');) {
    std::istringstream parts(line);
    std::string part;
    std::getline(parts, part, ',');
    const std::string table = part;
    machine::TableData& data = machine[machine::tableAt(table)];
    data.recorded = true;
    data.rows.push_back(machine::emptyRow(machine::tableAt(table)));
    while (std::getline(parts, part, ',')) {
      const std::size_t at = machine::columnAt(table, part.substr(0, part.find('=')));
      data.rows.back()[at] =
          valueOf(machine::findTable(table)->columns[at].type, part.substr(part.find('=') + 1));
    }
  }
  return machine;
}

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
  const struct {
    const char* what;
    const char* before;
    const char* after;
    const char* changes;
  } cases[] = {
      {"another order",                              "users,name=a,uid=1; users,name=b,uid=2",
       "users,name=b,uid=2; users,name=a,uid=1",                                                                                                                             ""                  },
      {"an update in its place, and one that moved",
       "software,path=/A,name=A,version=1; software,path=/B,name=B",                                         "software,path=/A,name=A,version=2; software,path=/C/B,name=B",
       "software A.version; -software B; +software B"                                                                                                                                            },
      {"one file knows less of what identifies",
       "disks,model=M,internal=true; usb,name=Hub,version=1; usb,name=Hub,vendor_id=7,version=2",            "disks,model=M,serial=S,internal=false; usb,name=Hub,vendor_id=7,version=2; "
       "usb,name=Hub,vendor_id=8,version=1",                                "disks M.internal"  },
      {"a part replaced by one of the same model",   "disks,model=M,serial=S",
       "disks,model=M,serial=T",                                                                                                                                             "-disks M; +disks M"},
      {"one of several with one name",               "software,name=A,version=1; software,name=A,version=2",
       "software,name=A,version=3; software,name=A,version=1",                                                                                                               "software A.version"},
      {"rows without a name",                        "memory,size_mb=8; memory,size_mb=8; memory,size_mb=4",
       "memory,size_mb=4; memory,size_mb=8",                                                                                                                                 "-memory 2"         },
      {"what either does not know",                  "users,name=a,uid=1; battery,model=B",                  "users,name=a,shell=sh",
       ""                                                                                                                                                                                        },
      {"what changes by itself",
       "volumes,name=V,free_bytes=1; processes,name=p; volumes,name=I,disk_model=Disk Image",                "volumes,name=V,free_bytes=2; processes,name=q",                ""                  },
  };
  for (const auto& made : cases) {
    EXPECT_EQ(compared(made.before, made.after), made.changes) << made.what;
  }
  EXPECT_EQ(
      compared("volumes,uuid=U,name=A,mount_point=/A; volumes,uuid=W,mount_point=/B,writable=true; "
               "volumes,uuid=W,mount_point=/C,writable=true; volumes,uuid=X,mount_point=/",
               "volumes,uuid=W,mount_point=/C,writable=false; "
               "volumes,uuid=W,mount_point=/B,writable=false; "
               "volumes,uuid=U,name=D,mount_point=/D; volumes,uuid=Y,mount_point=/"),
      "volumes A.mount_point; volumes A.name; volumes /B.writable; volumes /C.writable; volumes "
      "/.uuid");
  EXPECT_EQ(compared("volumes,name=V,free_bytes=1; processes,name=p",
                     "volumes,name=V,free_bytes=2; processes,name=q", {true, {}}),
            "volumes V.free_bytes; -processes p; +processes q");
  EXPECT_EQ(compared("users,name=a; disks,model=M,firmware=1,kind=ssd",
                     "users,name=b; disks,model=M,firmware=2,kind=hdd",
                     {
                         false, {"users", "disks.firmware"}
  }),
            "disks M.kind");
}

TEST(Compare, KnowsTheRulesOfASnapshot) {
  EXPECT_EQ(
      compared("firewall,kind=service,name=F,setting=on; software,name=A; software,name=Gone; "
               "memory,used=false",
               "firewall,kind=service,name=F,setting=off; software,path=/1,name=A; "
               "software,path=/2,name=A; software,path=/3,name=New; memory,slot=DIMM1",
               {}, Source::Debug),
      "-software Gone; +software New");
}

// With a step for each pair of rows this would take minutes.
TEST(Compare, FindsOneAmongManyThatAreEqual) {
  for (const std::string table : {"memory", "users"}) {
    Description before = described(Source::Snapshot, table + (table == "users" ? ",name=a" : ""));
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
  EXPECT_TRUE(same("machine,serial=S,uuid=U", "machine,serial=S,uuid=V"));
  EXPECT_FALSE(same("machine,serial=S,uuid=U", "machine,serial=T,uuid=U"));
  EXPECT_FALSE(same("machine,serial=S,uuid=U", "machine,uuid=V"));
  EXPECT_TRUE(same("machine,name=a", "machine,serial=S"));
  for (const char* name : {"users", "users.uid"}) EXPECT_TRUE(inspect::isInSchema(name)) << name;
  for (const char* name : {"", ".", "uid", "users.", "users.walls", "users.uid."}) {
    EXPECT_FALSE(inspect::isInSchema(name)) << name;
  }
}
