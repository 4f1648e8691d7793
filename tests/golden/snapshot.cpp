#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <string>

#include "golden/machine.h"

void PrintTo(const Machine& machine, std::ostream* out) {
  *out << machine.name;
}

namespace {

// Whether scripts/refresh-golden asks for this machine's file.
bool isToBeRefreshed(const std::string& machine) {
  const char* named = std::getenv("ORBEX_REFRESH_GOLDEN");
  const std::string names = " " + std::string(named == nullptr ? "" : named) + " ";
  return names.find(" " + machine + " ") != std::string::npos;
}

// The line in which two texts begin to differ, of each.
std::string difference(const std::string& golden, const std::string& scanned) {
  const auto at = std::ranges::mismatch(golden, scanned).in1 - golden.begin();
  const std::size_t start = golden.substr(0, static_cast<std::size_t>(at)).rfind('\n') + 1;
  const auto line = [start](const std::string& text) {
    return text.substr(start, text.find('\n', start) - start);
  };
  return "golden:  " + line(golden) + "\nscanned: " + line(scanned);
}

class GoldenSnapshot : public testing::TestWithParam<Machine> {};

std::string machineName(const testing::TestParamInfo<Machine>& info) {
  std::string name = info.param.name;
  std::erase(name, '-');  // no test's name has one
  return name;
}

}  // namespace

TEST_P(GoldenSnapshot, IsWhatAScanGives) {
  const std::string scanned = scannedText(GetParam());
  if (isToBeRefreshed(GetParam().name)) {
    std::ofstream(goldenFile(GetParam()), std::ios::binary) << scanned;
    GTEST_SKIP() << "wrote " << goldenFile(GetParam());
  }
  const std::string golden = goldenText(GetParam());
  EXPECT_TRUE(golden == scanned) << difference(golden, scanned)
                                 << "\nIf this is wanted: scripts/refresh-golden "
                                 << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(Machines, GoldenSnapshot, testing::ValuesIn(machines()), machineName);
