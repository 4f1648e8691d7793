#include "postprocess/environment.h"

#include <gtest/gtest.h>

TEST(Environment, EndsAtAnEmptyLineOrOneWithoutAnEnd) {
  const std::pair<const char*, const char*> cases[] = {
      {"A=1\nB=2\n\nC=3\n",       "[A|1][B|2]"},
      {"no\n=x\n  of it}\nB=2\n", "[|x][B|2]" },
      {"\nA=1\n",                 ""          },
  };
  for (const auto& [output, variables] : cases) {
    std::string parsed;
    for (const auto& [name, value] : parseEnvironment(output)) {
      parsed.append("[").append(name).append("|").append(value).append("]");
    }
    EXPECT_EQ(parsed, variables) << output;
  }
}
