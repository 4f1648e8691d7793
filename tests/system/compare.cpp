#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <string_view>

#include "base/formatString.h"
#include "huxread/handmade.h"
#include "support/demoMac.h"
#include "support/fileText.h"
#include "support/shell.h"
#include "support/snapshotFile.h"
#include "support/workingFolder.h"

// What changed between files, told by the real program.

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

const std::string kHuxutil = "'" HUXUTIL "' ";

class Comparing : public WorkingFolder {
 protected:
  // To ask for the status of each process takes most of a scan's time.
  Comparing() { writeScript("bin/ps", "test $# -lt 4 || echo \"$PPID Ss\"; date +'%N | 1 | now'"); }

  static void scan(const std::string& recording, const std::string& file) {
    outcome(playing(recording) + kAgent + "-silent && mv *.hux " + file);
  }

  static void expect(const std::string& arguments, int exitCode, const std::string& output,
                     const std::string& errors = "") {
    const Outcome seen = outcome(kHuxutil + arguments);
    EXPECT_EQ(seen.exitCode, exitCode) << arguments;
    EXPECT_EQ(seen.output, output) << arguments;
    EXPECT_EQ(seen.errors, errors) << arguments;
  }
};

void replace(std::string& text, std::string_view before, std::string_view after) {
  const std::size_t at = text.find(before);
  if (at != std::string::npos) text.replace(at, before.size(), after);
}

// A scanned file once more, of another time and with other words.
void writeScan(const std::string& file, const std::string& time,
               std::initializer_list<std::pair<const char*, const char*>> words = {}) {
  std::string parts[] = {sectionOf("scan", 0), sectionOf("scan", 1)};
  parts[1] = std::regex_replace(parts[1], std::regex("last-scan=.*"), "last-scan=" + time);
  parts[1] = std::regex_replace(parts[1], std::regex("int-name=.*"), "int-name=kestrel");
  for (std::string& part : parts) {
    for (const auto& [before, after] : words) replace(part, before, after);
    part = blob(part);
  }
  const auto entry = [&](int number, std::size_t offset, const char* type) {
    return formatString("[%d]\noffset=%zu\nlength=%zu\ntype=%s\n", number, offset,
                        parts[number].size(), type);
  };
  std::ofstream(file, std::ios::binary)
      << huxFile(parts[0] + parts[1], "[H]\ncount=2\nsnapshotcount=1\n" + entry(0, 0, "snapshot") +
                                          entry(1, parts[0].size(), "assetinfo"));
}

}  // namespace

TEST_F(Comparing, TellsWhatChangedOnAMac) {
  scan(PROJECT_FOLDER "/demo/mac", "a");
  scan(PROJECT_FOLDER "/demo/mac", "b");
  expect("diff a b", 0, "");
  outcome(
      "cp -R '" PROJECT_FOLDER
      "/demo/mac' changed; cd changed; "
      "sed -i.old 's/>16 GB</>8 GB</' SPHardwareDataType.xml; sed -i.old '/^mara$/d' users.txt; "
      "sed -i.old -e 's/Backgammon 0.16.4/Backgammon 0.17/' -e "
      "'/>Backgammon</,/>0.16.4</s/>0.16.4</>0.17</' SPApplicationsDataType.xml; rm *.old");
  outcome(kMac + kAgent + "-silent -debug && mv *.hux bb");  // cannot hold users
  scan("changed", "c");
  const std::string memory = "  memory 16 -> 8 GB\n";
  const std::string user = "- user mara\n";
  expect("diff a c", 1, memory + "  Backgammon 0.16.4 -> 0.17\n" + user);
  expect("diff c a --ignore software --ignore machine.memory_mb", 1, "+ user mara\n");
  expect("diff -q a c", 1, "");
  expect("diff a c --ignore software.walls", 2, "",
         "huxutil: software.walls: there is no such table or column\n");
  expect("diff a nothing", 2, "", "huxutil: nothing: No such file or directory\n");
  EXPECT_THAT(outcome(kHuxutil + "diff --all a b").output, HasSubstr("+ process "));

  const auto json = nlohmann::json::parse(outcome(kHuxutil + "diff --json a c").output);
  EXPECT_EQ(json["before"]["serial"], "DEMO0KESTREL");
  EXPECT_EQ(json["changes"][0], nlohmann::json::parse(R"({"change":"changed","table":"machine",
      "row":"","column":"memory_mb","before":16384,"after":8192})"));
  EXPECT_EQ(json["changes"].back()["values"]["full_name"], "Mara Lindgrove");

  EXPECT_THAT(outcome(kHuxutil + "history a bb c").output,
              AllOf(HasSubstr("    no change\n"), EndsWith("\n                  - user mara\n")));

  outcome("mv a scan");
  writeScan("other", "20260907080000.000000+60",
            {
                {"DEMO0KESTREL", "DEMO0OTHER"}
  });
  expect("diff scan other --ignore machine", 0, "",
         "huxutil: other: is of another machine than scan\n");
}

TEST_F(Comparing, TellsTheHistoryOfEachMac) {
  scan(PROJECT_FOLDER "/demo/mac", "scan");
  std::string kestrel = "kestrel  MacBookPro9,1, DEMO0KESTREL, 12 scans\n";
  std::string other = "kestrel  MacBookPro9,1, DEMO0OTHER, 12 scans\n";
  outcome("mkdir fleet");
  // The first one was made in the east of the second one, and is the earlier one all the same.
  const std::string times[] = {"2026-09-07 01:00+120", "2026-09-06 23:30+0", "2026-09-14 08:00+0",
                               "2026-09-21 08:00+0",   "2026-09-28 08:00+0", "2026-10-05 08:00+0",
                               "2026-10-12 08:00+0",   "2026-10-19 08:00+0", "2026-10-26 08:00-60",
                               "2026-11-02 08:00-60",  "2026-11-09 08:00+0", "2026-11-16 08:00+0"};
  for (int week = 0; week < 12; ++week) {
    const std::string name = "fleet/" + std::string(1, static_cast<char>('z' - week));
    const std::string date = times[week].substr(0, 16);
    const std::string time =
        std::regex_replace(date, std::regex("[^0-9]"), "") + "00.000000" + times[week].substr(16);
    const char* memory = week < 6 ? "physical-memory=16384" : "physical-memory=8192";
    const char* user = week < 6 ? "*usr-acc:mara" : "*nobody:mara";
    writeScan(name + ".hux", time,
              {
                  {"physical-memory=16384", memory},
                  {"*usr-acc:mara",         user  }
    });
    writeScan(name + "2.hux", time,
              {
                  {"DEMO0KESTREL", "DEMO0OTHER"}
    });
    const std::string still = date + (week == 0 ? "    first scan\n" : "    no change\n");
    kestrel += week != 6 ? still : date + "    memory 16 -> 8 GB\n                  - user mara\n";
    other += still;
  }
  outcome("cp fleet/z.hux fleet/copy.hux; echo this is no snapshot file >fleet/none.hux");
  expect("history fleet", 2, kestrel + "\n" + other,
         "huxutil: fleet/none.hux: not a snapshot file: bad magic\n"
         "huxutil: history: 1 file could not be read\n");
  expect("history - <fleet/z.hux", 0,
         "kestrel  MacBookPro9,1, DEMO0KESTREL, 1 scan\n2026-09-07 01:00    first scan\n");
  const std::string json = outcome(kHuxutil + "history --json fleet/t.hux fleet/u.hux").output;
  EXPECT_THAT(json, EndsWith("]}\n"));
  const auto scans = nlohmann::json::parse(json)["scans"];
  EXPECT_EQ(scans[0]["file"], "fleet/u.hux");
  EXPECT_TRUE(scans[0]["changes"].is_null());
  EXPECT_EQ(scans[1]["changes"].size(), 2U);
}
