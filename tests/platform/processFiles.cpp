#include "platform/portable/processFiles.h"

#include <gtest/gtest.h>

TEST(ProcessFiles, ReadNamesOfAnyCharacters) {
  const auto process = platform::parseProcessStat("7 (a b) (\nc) R) S 12 7\n");
  ASSERT_TRUE(process.has_value());
  EXPECT_EQ(process->pid, 7);
  EXPECT_EQ(process->ppid, 12);
  EXPECT_EQ(process->name, "a b) (\nc) R");
}

TEST(ProcessFiles, RefuseOtherShapes) {
  for (const char* stat : {"", "42 (sh", "42 sh) S 1", ")( S 1", "42 (sh)", "42 (sh) S ",
                           "42 (sh) S x", "x (sh) S 1", "4294967296 (sh) S 1"}) {
    EXPECT_FALSE(platform::parseProcessStat(stat).has_value()) << stat;
  }
}
