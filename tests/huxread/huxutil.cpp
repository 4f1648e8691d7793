#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "handmade.h"
#include "support/shell.h"
#include "support/workingFolder.h"

using Huxutil = WorkingFolder;

namespace {

// Runs the shell line "huxutil `arguments`" where test.hux holds these bytes. Errors are output
// too.
Outcome runHuxutil(const std::string& arguments, const std::string& bytes) {
  std::ofstream("test.hux", std::ios::binary) << bytes;
  return outcome("exec 2>&1; '" HUXUTIL "' " + arguments);
}

// Sections 0 (assetinfo, "asset"), 2 (snapshot, "scan") and 3 (snapshot, not readable).
std::string exampleFile() {
  const std::string asset = blob("asset");
  const std::string scan = blob("scan");
  const auto place = [](std::size_t offset, std::size_t length) {
    return "offset=" + std::to_string(offset) + "\nlength=" + std::to_string(length) + "\n";
  };
  return huxFile(asset + scan,
                 "[H]\ncount=4\nsnapshotcount=2\n[2]\n" + place(asset.size(), scan.size()) +
                     "type=snapshot\ntimestamp=\33[31m\xC3\xA4\n[0]\n" + place(0, asset.size()) +
                     "type=assetinfo\n[3]\n" + place(0, 0) + "type=snapshot\n");
}

}  // namespace

TEST_F(Huxutil, ListsWithoutPassingControlCharactersOn) {
  const Outcome run = runHuxutil("list test.hux | sed 's/  */ /g'", exampleFile());
  const std::string asset = std::to_string(blob("asset").size());
  const std::string scan = std::to_string(blob("scan").size());
  EXPECT_EQ(run.output, "section type offset length timestamp\n 0 assetinfo 0 " + asset +
                            " -\n 2 snapshot " + asset + " " + scan +
                            " ?[31m??\n 3 snapshot 0 0 -\n");
}

TEST_F(Huxutil, AnswersWithTextOrWordsAndExitCode) {
  const struct {
    const char* arguments;
    int exitCode;
    const char* output;
  } cases[] = {
      {"text test.hux",            0, "asset"                                                 },
      {"text test.hux 2",          0, "scan"                                                  },
      {"text test.hux snapshot",   0, "scan"                                                  },
      {"text test.hux ''",         2, "huxutil: test.hux: has no section \n"                  },
      {"text test.hux customdata", 2, "huxutil: test.hux: has no section customdata\n"        },
      {"text test.hux 3",          2,
       "huxutil: test.hux: section 3: not a compressed document: bad magic\n"                 },
      {"list .",                   2, "huxutil: .: Is a directory\n"                          },
      {"list /dev/zero",           2,
       "huxutil: /dev/zero: not a snapshot file: has more than 536870912 bytes\n"             },
      {"list",                     2,
       "Usage: huxutil list FILE\n       huxutil text FILE [SECTION]\n       huxutil --help\n"},
  };
  for (const auto& [arguments, exitCode, output] : cases) {
    const Outcome run = runHuxutil(arguments, exampleFile());
    EXPECT_EQ(run.exitCode, exitCode) << arguments;
    EXPECT_EQ(run.output, output) << arguments;
  }
}

TEST_F(Huxutil, ExplainsItselfWhereverItIsAskedTo) {
  const Outcome run = runHuxutil("list test.hux --help 2>&-", exampleFile());
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_TRUE(run.output.starts_with("Usage: huxutil list FILE\n")) << run.output;
}

TEST_F(Huxutil, MindsAFullDiskButNoReaderThatLeft) {
  const std::string file = fileOfOne("customdata", zlibStream(std::string(5000000, 'x')));
  const Outcome left = runHuxutil("text test.hux | head -c 3", file);
  EXPECT_EQ(left.output, "xxx");
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no device that is always full";
  const Outcome full = runHuxutil("text test.hux >/dev/full", file);
  EXPECT_EQ(full.exitCode, 2);
  EXPECT_EQ(full.output, "huxutil: standard output: No space left on device\n");
}
