// What only a Mac does: the answers of its host that the portable one cannot give.

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdint>

#include "platform/apple/appleHost.h"
#include "platform/apple/cfValue.h"
#include "platform/shown.h"
#include "support/apple/objects.h"
#include "support/apple/standIn.h"

using platform::NumberType;
using platform::Process;
using platform::PropertyList;
using platform::apple::AppleHost;

TEST(ComputerName, IsAnyText) {
  for (const std::string name : {"", "Kate\u2019s Mac", "\U0001F34E\u6771\u4EAC"}) {
    standIn::mac().computerName = name;
    EXPECT_EQ(AppleHost().computerName(), name);
  }
  standIn::mac().computerName.reset();
  EXPECT_EQ(AppleHost().computerName(), "");
}

TEST(ProcessTable, KeepsTheKernelsOrderAndItsOwnEntry) {
  standIn::mac().processes = {
      {0,  0,  "kernel_task"      },
      {77, -1, "sixteen bytes ..."},
      {1,  0,  ""                 }
  };
  std::string shown;
  for (const Process& process : AppleHost().processTable()) {
    shown += std::to_string(process.pid) + " " + std::to_string(process.ppid) + " " + process.name +
             "\n";
  }
  EXPECT_EQ(shown, "0 0 kernel_task\n77 -1 sixteen bytes ..\n1 0 \n");
}

TEST(ProcessTable, IsAskedForThreeTimesWhileItGrows) {
  const struct {
    int growths;
    int error;
    int reads;
    std::size_t processes;
  } cases[] = {
      {0, 0,     1, 1},
      {2, 0,     3, 3},
      {3, 0,     3, 0},
      {0, EPERM, 1, 0},
  };
  for (const auto& c : cases) {
    standIn::mac().processes = {
        {1, 0, "launchd"}
    };
    standIn::mac().growths = c.growths;
    standIn::mac().tableError = c.error;
    standIn::mac().tableReads = 0;
    EXPECT_EQ(AppleHost().processTable().size(), c.processes) << c.growths;
    EXPECT_EQ(standIn::mac().tableReads, c.reads) << c.growths;
  }
}

TEST(Values, AreSortedByTheirKeys) {
  const auto list = AppleHost().parsePropertyList(
      "<dict><key>b</key><true/><key>B</key><true/><key>a</key><true/><key>_</key><true/></dict>");
  ASSERT_TRUE(list);
  std::string keys;
  for (const auto& [key, value] : *list->dictionary()) keys += key;
  EXPECT_EQ(keys, "B_ab");
}

TEST(Values, KeepTheTypeOfTheirNumbers) {
  const PropertyList::Number cases[] = {
      {NumberType::SInt8,   -1,        0     },
      {NumberType::SInt32,  7,         0     },
      {NumberType::CFIndex, INT64_MIN, 0     },
      {NumberType::Float32, 0,         1.5   },
      {NumberType::CGFloat, 0,         -1e300},
  };
  for (const PropertyList::Number& number : cases) {
    const platform::apple::Owned<CFNumberRef> object(
        standIn::refOf<CFNumberRef>(standIn::make({standIn::Number, "", number})));
    const auto value = platform::apple::scalarOf(object.get());
    EXPECT_EQ(value->number()->type, number.type);
    EXPECT_EQ(value->number()->integer, number.integer);
    EXPECT_EQ(value->number()->real, number.real);
  }
}

// Lists that no XML says, but a binary one may.

TEST(BinaryLists, LoseEntriesWhoseKeyIsNoText) {
  standIn::mac().binaryList = standIn::make({
      standIn::Dictionary,
      "",
      {                                       },
      { standIn::make({standIn::Number, "", {NumberType::SInt64, 7}}),
        standIn::make({standIn::String, "lost"}), standIn::make({standIn::String, "key"}),
        standIn::make({standIn::String, "kept"}), standIn::make({standIn::Array}),
        standIn::make({standIn::String, "lost"})}
  });
  const auto list = AppleHost().parsePropertyList(std::string(60, 'b'));
  ASSERT_TRUE(list);
  EXPECT_EQ(shown(*list), "{ key=\"kept\" }");
}

TEST(BinaryLists, AreRefusedThatUnfoldWithoutEnd) {
  const struct {
    int doublings;
    bool inDictionaries;
    std::size_t text;  // size of the one that all of them share, in bytes
    std::size_t document;
    bool isRead;
  } cases[] = {
      {30, false, 1,    242,  false},
      {30, true,  1,    302,  false},
      {9,  false, 3000, 3075, false},
      {6,  false, 0,    18,   false},
      {3,  true,  300,  342,  true },
  };
  for (const auto& c : cases) {
    standIn::Object* object = standIn::make({standIn::String, std::string(c.text, 'x')});
    for (int i = 0; i < c.doublings; ++i) {
      standIn::Object* same = standIn::share(object);
      object = !c.inDictionaries ? standIn::make({
                                       standIn::Array, "", {    },
                                         { object, same}
      })
                                 : standIn::make({standIn::Dictionary,
                                                  "",
                                                  {},
                                                  {standIn::make({standIn::String, "a"}), object,
                                                   standIn::make({standIn::String, "b"}), same}});
    }
    standIn::mac().binaryList = object;
    EXPECT_EQ(AppleHost().parsePropertyList(std::string(c.document, 'b')).has_value(), c.isRead)
        << c.doublings << " " << c.text;
  }
}

TEST(Dates, AreAsciiAndGregorianInEveryRegion) {
  const struct {
    const char* region;
    const char* formattedFor;
  } cases[] = {
      {"en_US",                   "en_US"      },
      {"sv_SE",                   "sv_SE"      },
      {"ar_EG",                   "en_US_POSIX"}, // digits
      {"fa_IR",                   "en_US_POSIX"}, // both
      {"th_TH",                   "en_US_POSIX"}, // calendar
      {"ja_JP@calendar=japanese", "en_US_POSIX"},
  };
  for (const auto& [region, formattedFor] : cases) {
    standIn::mac().region = region;
    EXPECT_EQ(AppleHost().formatDate(536457599, "yyyyMMddHHmmss.000000 ZZ"),
              "20180101052959.000000 +0530")
        << region;
    EXPECT_EQ(AppleHost().formatDate(536457599, "yyyy-MM-dd"), "2018-01-01") << region;
    EXPECT_EQ(standIn::mac().formattedFor, formattedFor);
  }
}
