#include "collect/commandRunner.h"

#include <gtest/gtest.h>

#include "support/fakeHost.h"

using namespace std::string_literals;

TEST(CommandRunner, ReadsToTheEndInChunks) {
  const struct {
    const char* what;
    std::vector<std::string> reads;
    std::string output;
    std::size_t readCount;
  } cases[] = {
      {"slow to begin",          {"", "", "ab"},       "ab",         3},
      {"too slow to begin",      {"", "", "", "ab"},   "",           3},
      {"no patience later on",   {"abcd", "", "ef"},   "abcd",       2},
      {"ends with a short read", {"abcd", "ef", "gh"}, "abcdef",     2},
      {"NUL bytes are bytes",    {"a\0\0d"s, "\0f"s},  "a\0\0d\0f"s, 2},
  };
  for (const auto& [what, reads, output, readCount] : cases) {
    FakeHost host;
    host.reads["command"] = {reads};
    std::uint32_t length = 99;
    EXPECT_EQ(runCommand(host, "command", length, 4), output) << what;
    EXPECT_EQ(length, output.size()) << what;
    EXPECT_EQ(host.readSizes, std::vector<std::size_t>(readCount, 4)) << what;
  }
}

TEST(CommandRunner, TakesACommandThatCannotBeStartedForSilent) {
  struct : FakeHost {
    std::unique_ptr<platform::CommandOutput> startCommand(const std::string&) override {
      return nullptr;
    }
  } host;
  std::uint32_t length = 99;
  EXPECT_EQ(runCommand(host, "command", length, 4), "");
  EXPECT_EQ(length, 0U);
}
