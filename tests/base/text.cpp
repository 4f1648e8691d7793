#include "base/text.h"

#include <gtest/gtest.h>

TEST(Text, IsHandledByteByByte) {
  std::string text = "- x y -";
  EXPECT_EQ(TrimChars(text, " -", kTrimStart), "x y -");
  EXPECT_EQ(FirstWord("\r\n1333\n MHz"), "1333");
  EXPECT_EQ(FirstWord(" 1333"), "");
  EXPECT_EQ(CountOccurrences("aaaaa", "aa"), 2U);
  EXPECT_EQ(CountOccurrences("aaaa", ""), 0U);
  EXPECT_EQ(toLower("aZ@[`\xC3\x84"), "az@[`\xC3\x84");
  EXPECT_EQ(dashedAddress("00:1b:63:aa:bb:cz"), "00-1B-63-AA-BB-CZ");
}
