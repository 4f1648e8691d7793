#include "postprocess/operatingSystem.h"

#include <gtest/gtest.h>

#include "shortForms.h"

TEST(OperatingSystem, CouldRunIn64BitsBeforeItHadTo) {
  const std::string text = snapshotOf(
      PostProcessOperatingSystem,
      rawDocument({"SPSoftwareDataType", "{os_version=OS X 10.6.8; 64bit_kernel_and_kexts=yes}"}));
  EXPECT_NE(text.find("\narchitecture=64-bit\n"), text.npos);
}

TEST(OperatingSystem, WritesAnUptimeAsAnInterval) {
  const std::pair<const char*, const char*> cases[] = {
      {"up 0:00:75",                  "00000000000115.000000:000"},
      {"1:2:0:0:0",                   "00000003000000.000000:000"},
      {"9:9 up 1h:-2",                "00000000000102.000000:000"},
      {"up 3 ",                       "00000000000000.000000:000"},
      {"",                            "00000000000000.000000:000"},
      {"99999999999999999999:0:0:00", "11574074014640.000000:000"},
  };
  for (const auto& [uptime, interval] : cases)
    EXPECT_EQ(uptimeInterval(uptime), interval) << uptime;
}
