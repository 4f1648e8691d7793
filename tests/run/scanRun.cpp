#include "run/scanRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/fakeHost.h"
#include "support/snapshotFile.h"
#include "support/workingFolder.h"

using testing::HasSubstr;
using testing::StartsWith;

using ScanRun = WorkingFolder;

namespace {

const std::string kProfiler = "system_profiler -detailLevel full -xml";

}  // namespace

TEST_F(ScanRun, WritesAFileOfASilentMachine) {
  FakeHost host;
  host.times = {0, 0, 536446799.5};  // begin, end, time stamp
  testing::internal::CaptureStdout();
  scanRun(host, RunOptions{1, 0, 0}, true, false, "", "operator");
  const std::string path = pathOf("FAKE-MAC_.hux");
  EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::EndsWith("\n>>>" + path + "\n"));
  EXPECT_THAT(sectionOf(path, 0),
              StartsWith("\xEF\xBB\xBF?keva\n*Snapshot=\ntimestamp=20171231235959.000000+180\n"
                         "scan-time=0\nclient-version=17.05.24.0\n"));
  EXPECT_THAT(sectionOf(path, 0), HasSubstr("\nip-address=0.0.0.0\n"));
  EXPECT_THAT(sectionOf(path, 1), HasSubstr("\nlogin=operator\n"));
  const auto file = huxread::Container::open(path);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->sections()[0].type, huxread::SectionType::Snapshot);
  EXPECT_EQ(file->sections()[0].timestamp, "20171231235959.000000+180");
  EXPECT_EQ(file->sections()[1].type, huxread::SectionType::AssetInfo);
  EXPECT_EQ(
      std::ranges::count_if(
          host.commands, [](const std::string& command) { return command.starts_with(kProfiler); }),
      3 * 23);  // attempts for each data type
  EXPECT_THAT(host.commands, testing::Not(testing::Contains(StartsWith("ioreg"))));
}

// In milliseconds of a number of seconds that fits 32 bits, whatever the clock does meanwhile.
TEST_F(ScanRun, SaysHowLongItTook) {
  constexpr double kYear2500 = 15e9;
  const struct {
    double start;
    double end;
    std::string milliseconds;
  } cases[] = {
      {100.9,           165.1,           "65000"         },
      {2147483640.5,    2147483650,      "10000"         }, // in 2069
      {165,             100,             "-65000"        },
      {-kYear2500,      kYear2500,       "2147483647000" },
      {kYear2500,       -kYear2500,      "-2147483648000"},
      {kYear2500 + 0.9, kYear2500 + 1.1, "1000"          },
  };
  for (const auto& [start, end, milliseconds] : cases) {
    FakeHost host;
    host.times = {start, end, 0};
    testing::internal::CaptureStdout();
    scanRun(host, RunOptions{1, 0, 0}, true, false, "", "");
    testing::internal::GetCapturedStdout();
    const std::string path = pathOf("FAKE-MAC_.hux");
    EXPECT_THAT(sectionOf(path, 0), HasSubstr("\nscan-time=" + milliseconds + "\n"));
    std::filesystem::remove(path);
  }
}

TEST_F(ScanRun, IsLeftOutWhenTheOptionsSaySo) {
  FakeHost host;
  scanRun(host, RunOptions{1, 1, 1}, true, false, "", "");
  EXPECT_TRUE(host.commands.empty());
  EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST_F(ScanRun, KeepsForSupportEvenWhatIsNoProfile) {
  FakeHost host;
  host.reads[kProfiler] = {{}, {"<plist>no property list"}};
  testing::internal::CaptureStdout();
  scanRun(host, RunOptions{1, 0, 0}, true, true, "10.9.9.9", "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), ">>>" + pathOf("FAKE-MAC_.hux") + "\n");
  EXPECT_EQ(host.commands, std::vector(2, kProfiler));
  EXPECT_EQ(sectionOf(pathOf("FAKE-MAC_.hux"), 1), "<plist>no property list");
  EXPECT_THAT(sectionOf(pathOf("FAKE-MAC_.hux"), 0), HasSubstr("\nip-address=10.9.9.9\n"));
}
