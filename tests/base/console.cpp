#include "base/console.h"

#include <gtest/gtest.h>
#include <unistd.h>

TEST(ConsoleDeathTest, FlushesProgressAlone) {
  const auto print = [] {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    printText("%d%% ", 33);
    printProgress("%s...", "1");
    printText("left in the buffer");
    _exit(0);
  };
  EXPECT_EXIT(print(), testing::ExitedWithCode(0), "^33% 1\\.\\.\\.$");
}
