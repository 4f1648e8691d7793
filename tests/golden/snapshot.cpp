#include <gtest/gtest.h>

#include "golden/machine.h"

class GoldenSnapshot : public testing::TestWithParam<Machine> {};

TEST_P(GoldenSnapshot, IsWhatAScanGives) {
  const Machine& machine = GetParam();
  expectGolden(machine.name, goldenFile(machine), scannedText(machine));
}

INSTANTIATE_TEST_SUITE_P(Machines, GoldenSnapshot, testing::ValuesIn(machines()), testName);
