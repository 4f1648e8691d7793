#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "golden/machine.h"

class GoldenSnapshot : public testing::TestWithParam<Machine> {};

TEST_P(GoldenSnapshot, IsWhatAScanGives) {
  const std::string scanned = scannedText(GetParam());
  if (isToBeRefreshed(GetParam())) {
    std::ofstream(goldenFile(GetParam()), std::ios::binary) << scanned;
    GTEST_SKIP() << "wrote " << goldenFile(GetParam());
  }
  const std::string golden = goldenText(GetParam());
  EXPECT_TRUE(golden == scanned) << difference(golden, scanned)
                                 << "\nIf this is wanted: scripts/refresh-golden "
                                 << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(Machines, GoldenSnapshot, testing::ValuesIn(machines()), testName);
