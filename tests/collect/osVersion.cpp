#include "collect/osVersion.h"

#include <gtest/gtest.h>

TEST(OsVersion, IsReadFromTheProfilersText) {
  const std::pair<const char*, const char*> cases[] = {
      {"macOS 10.13.1 (17B48)", "13|macOS 10.13.1 (17B48)|10.13.1 (17B48)|1"   },
      {"OS X 10.8.5 (12F45)",   "8|OS X v10.8 (Mountain Lion)|10.8.5 (12F45)|5"},
      {"OS X 10.10.11",         "10|OS X v10.10 (Yosemite)|10.10.11|11"        },
      {"OS X 10.9 13.1",        "9|OS X v10.9 (Mavericks)|10.9 13.1|1"         },
      {"macOS 10.-1",           "-1|macOS 10.-1|10.-1|"                        },
      {"macOS-10.13",           "13|macOS-10.13|10.13|"                        },
      {"macOS",                 "0|Mac OS X v10.0 (Cheetah)||"                 },
      {"",                      "0|Mac OS X v10.0 (Cheetah)||"                 },
  };
  for (const auto& [text, parts] : cases) {
    const OsVersion os = OsVersion::parse(text);
    EXPECT_EQ(std::to_string(os.minor) + "|" + os.name + "|" + os.version + "|" + os.update, parts);
  }
}

TEST(OsVersion, HasTheNameOfItsTime) {
  std::string names;
  for (int minor = 0; minor < 13; ++minor) {
    names += OsVersion::parse("OS X 10." + std::to_string(minor)).name + "\n";
  }
  EXPECT_EQ(names,
            "Mac OS X v10.0 (Cheetah)\nMac OS X v10.1 (Puma)\nMac OS X v10.2 (Jaguar)\n"
            "Mac OS X v10.3 (Panther)\nMac OS X v10.4 (Tiger)\nMac OS X v10.5 (Leopard)\n"
            "Mac OS X v10.6 (Snow Leopard)\nMac OS X v10.7 (Lion)\nOS X v10.8 (Mountain Lion)\n"
            "OS X v10.9 (Mavericks)\nOS X v10.10 (Yosemite)\nOS X v10.11 (El Capitan)\n"
            "macOS v10.12 (Sierra)\n");
}
