#include "run/snapshotFile.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "support/fileText.h"
#include "support/workingFolder.h"

namespace fs = std::filesystem;

using SnapshotFile = WorkingFolder;

TEST(SnapshotName, IsTheMachineAndItsAddress) {
  EXPECT_EQ(snapshotStem("Ann's mäc", "00-1C-42-AB-CD-EF"), "ANN'S MäC_001C42ABCDEF");
  EXPECT_EQ(snapshotStem("../a/b", ""), ".._A_B_");
  EXPECT_EQ(snapshotStem("a", std::string(41, 'b')), "A_" + std::string(40, 'b'));
  EXPECT_EQ(snapshotStem("a\nb\x7F", std::string("../00:1C\t\0", 10)), "A_B__.._00:1C__");
  EXPECT_EQ(snapshotStem(std::string(199, 'a') + "\xC3\xA4", "00"), std::string(199, 'A') + "_00");
}

TEST_F(SnapshotFile, TakesTheFirstNameThatNothingStandsAt) {
  EXPECT_EQ(saveSnapshotFile("A_1", "mine").path, pathOf("A_1.hux"));
  fs::create_symlink("absent", "A_1(1).hux");
  fs::create_directory("A_1(2).hux");
  const auto [path, saved] = saveSnapshotFile("A_1", "next");
  EXPECT_EQ(path, pathOf("A_1(3).hux"));
  EXPECT_TRUE(saved);
  EXPECT_EQ(fileText("A_1.hux") + fileText("A_1(3).hux"), "minenext");
  EXPECT_FALSE(fs::exists("absent"));
  const mode_t kept = umask(0);
  umask(kept);
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0666 & ~kept));
}

TEST_F(SnapshotFile, NamesAFileThatCannotBe) {
  EXPECT_EQ(saveSnapshotFile("no/folder", "").path, pathOf("no/folder.hux"));
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(pathOf("gone"));
  const auto [path, saved] = saveSnapshotFile("A_1", "");
  EXPECT_EQ(path, "./A_1.hux");
  EXPECT_FALSE(saved);
}

// Ended as soon as the file appears; the image is long enough for the signal to meet it half
// written.
TEST_F(SnapshotFile, IsThereWholeOrNotAtAll) {
  const std::string image(50'000'000, 'x');
  const pid_t child = fork();
  if (child == 0) _exit(saveSnapshotFile("A_1", image).saved ? 0 : 1);
  while (!fs::exists("A_1.hux") && waitpid(child, nullptr, WNOHANG) == 0) {
  }
  kill(child, SIGTERM);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(fs::file_size("A_1.hux"), image.size());
}
