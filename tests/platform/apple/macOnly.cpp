// What only a Mac does: the answers of its host that the portable one cannot give.

#include <gmock/gmock.h>

#include <cerrno>
#include <cstdint>

#include "platform/apple/appleHost.h"
#include "platform/apple/cfValue.h"
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
    const auto value = platform::apple::valueOf(object.get());
    EXPECT_EQ(value->number()->type, number.type);
    EXPECT_EQ(value->number()->integer, number.integer);
    EXPECT_EQ(value->number()->real, number.real);
  }
}
