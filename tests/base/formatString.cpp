#include "base/formatString.h"

#include <gtest/gtest.h>

TEST(FormatString, FormatsAnyLengthButEndsAtANul) {
  EXPECT_EQ(formatString("%100000d", 7), std::string(99999, ' ') + "7");
  EXPECT_EQ(formatString("ab%cde", '\0'), "ab");
}
