#include "collect/osVersion.h"

#include <gtest/gtest.h>

TEST(OsVersion, IsReadFromTheProfilersText) {
  const std::pair<const char*, const char*> cases[] = {
      {"macOS 10.13.1 (17B48)", "13|macOS 10.13.1 (17B48)|10.13.1 (17B48)|1"   },
      {"OS X 10.8.5 (12F45)",   "8|OS X v10.8 (Mountain Lion)|10.8.5 (12F45)|5"},
      {"OS X 10.10.11",         "10|OS X v10.10 (Yosemite)|10.10.11|11"        },
      {"OS X 10.9 13.1",        "9|OS X v10.9 (Mavericks)|10.9 13.1|1"         },
      {"macOS 10.-1",           "-1|macOS 10.-1|10.-1|"                        },
      {"macOS",                 "0|Mac OS X v10.0 (Cheetah)||"                 },
      {"",                      "0|Mac OS X v10.0 (Cheetah)||"                 },
  };
  for (const auto& [text, parts] : cases) {
    const OsVersion os = OsVersion::parse(text);
    EXPECT_EQ(std::to_string(os.minor) + "|" + os.name + "|" + os.version + "|" + os.update, parts);
  }
}
