#include "base/quantities.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(Quantities, ReadSizeTexts) {
  const struct {
    const char* text;
    double kilobytes;
    double gigabytes;
  } cases[] = {
      {"1,5 GB",      1572864,       1.5          },
      {"3 KB",        3,             3.0 / 1048576},
      {"2 TB",        2147483648,    2000         }, // mixed units
      {"1,024.5 MB",  1.024 * 1024,  0.001        }, // no thousands
      {"2\xC2\xA0GB", 2 * 1048576.0, 2            }, // no-break space
      {"1GB",         0,             0            }, // no separator
      {"4 kB",        0,             0            },
  };
  for (const auto& [text, kilobytes, gigabytes] : cases) {
    EXPECT_DOUBLE_EQ(ParseSizeKB(text), kilobytes) << text;
    EXPECT_DOUBLE_EQ(SizeToMB(text), gigabytes * 1024) << text;
  }
  EXPECT_THROW(ParseSizeGB("GB"), std::out_of_range);
}

TEST(Quantities, RoundUpFromFourTenthsAndStayWithinTheirTypes) {
  EXPECT_EQ(SizeToDecimalGB("3320312.5 KB", true), 3);           // 3.4
  EXPECT_EQ(SizeToDecimalGB("390625 GB", true), 419430);         // 419430.4: no digit to lose
  EXPECT_EQ(SizeToDecimalGB("2353515.625 KB", true), 3);         // 2.41
  EXPECT_DOUBLE_EQ(SizeToDecimalGB("-2343750 KB", true), -2.4);  // never rounded so low
  EXPECT_DOUBLE_EQ(SizeToDecimalGB("1,5 GB", false), 1.610612736);
  EXPECT_EQ(SizeToBytes("1e999 TB"), INT64_MAX);
  EXPECT_EQ(SizeToBytes("-inf KB"), INT64_MIN);
  EXPECT_EQ(SizeToBytes("nan GB"), 0);
  EXPECT_EQ(SizeToDecimalGB("3e9 GB", true), 2147483647);
}
