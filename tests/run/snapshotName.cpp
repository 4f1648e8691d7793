#include "run/snapshotName.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/workingFolder.h"

namespace fs = std::filesystem;

using SnapshotPath = WorkingFolder;

TEST(SnapshotName, IsTheMachineAndItsAddress) {
  EXPECT_EQ(snapshotStem("Ann's mäc", "00-1C-42-AB-CD-EF"), "ANN'S MäC_001C42ABCDEF");
  EXPECT_EQ(snapshotStem("../a/b", ""), ".._A_B_");
  EXPECT_EQ(snapshotStem("a\nb\x7F", "../00:1C\t"), "A_B__.._00:1C_");
  EXPECT_EQ(snapshotStem(std::string(199, 'a') + "\xC3\xA4", "00"), std::string(199, 'A') + "_00");
}

TEST_F(SnapshotPath, IsTheFirstThatNothingStandsAt) {
  EXPECT_EQ(claimSnapshotPath("A_1"), pathOf("A_1.hux"));
  EXPECT_TRUE(fs::is_empty("A_1.hux"));
  std::ofstream("A_1.hux") << "mine";
  fs::create_symlink("absent", "A_1(1).hux");
  fs::create_directory("A_1(2).hux");
  EXPECT_EQ(claimSnapshotPath("A_1"), pathOf("A_1(3).hux"));
  EXPECT_EQ(fs::file_size("A_1.hux"), 4U);
  EXPECT_FALSE(fs::exists("absent"));
}

TEST_F(SnapshotPath, IsNamedEvenWhereNoFileCanBe) {
  EXPECT_EQ(claimSnapshotPath("no/folder"), pathOf("no/folder.hux"));
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(pathOf("gone"));
  EXPECT_EQ(claimSnapshotPath("A_1"), "./A_1.hux");
}
