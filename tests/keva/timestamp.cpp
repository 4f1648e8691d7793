#include "keva/timestamp.h"

#include <gtest/gtest.h>

TEST(Timestamp, GivesTheOffsetInMinutes) {
  const std::string date = "20171231235959.000000";
  for (const auto& [offset, minutes] : {
           std::pair{" -0330",   "-210"},
           {" -045602", "-466"}, // 4 * 60 + 5602 % 256
           {" +01",     " +01"}
  }) {
    EXPECT_EQ(completeTimestamp(date + offset, TimestampForm::Long), date + minutes) << offset;
    EXPECT_EQ(completeTimestamp(date + offset, TimestampForm::Short), date + offset);
  }
  EXPECT_STREQ(timestampPattern(TimestampForm::Short), "yyyy-MM-dd");
}
