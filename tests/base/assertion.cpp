#include "base/assertion.h"

#include <gtest/gtest.h>

#include <csignal>

TEST(AssertionDeathTest, NamesTheConditionAndAborts) {
  EXPECT_EXIT(requireThat(false, "keva/tag", 364, "strm.avail_in == 0"),
              testing::KilledBySignal(SIGABRT),
              "^keva/tag:364: failed assertion `strm.avail_in == 0'\n$");
}
