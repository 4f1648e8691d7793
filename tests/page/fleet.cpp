#include "page/fleet.h"

#include <gmock/gmock.h>

#include <pugixml.hpp>
#include <regex>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::SizeIs;

namespace {

// The rows of the charts in a section, each as its text, folded or not.
std::vector<std::string> rowsOf(const std::string& page, const std::string& section,
                                const std::string& below) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(page.c_str(), pugi::parse_full | pugi::parse_ws_pcdata));
  std::vector<std::string> rows;
  for (const auto& found :
       document.select_nodes(("//section[@id='" + section + "']" + below + "/table/tr").c_str())) {
    std::string row;
    for (const auto& text : found.node().select_nodes(".//text()")) row += text.node().value();
    rows.push_back(std::regex_replace(row, std::regex("\xE2\x80[\x83\x87]"), " "));
  }
  return rows;
}

}  // namespace

TEST(FleetPage, PutsSystemsInTheirOrderAndSumsUpTheirVersions) {
  inspect::Overview overview;
  overview.machines = 2000;
  overview.systems = {
      {"Mac OS X", "10.6.8", "",        1  },
      {"macOS",    "26.1",   "Tahoe",   900},
      {"macOS",    "15.10",  "Sequoia", 98 },
      {"macOS",    "15.9.1", "Sequoia", 1  },
      {"macOS",    "beta",   "",        1  },
      {"macOS",    "Beta",   "",        1  }
  };
  const std::string page = page::fleet(overview, "huxutil 1");
  EXPECT_THAT(rowsOf(page, "systems", ""),
              ElementsAre("macOS 26 Tahoe900  45 %", "macOS 15 Sequoia99   5 %",
                          "Mac OS X 10.61  <1 %", "macOS beta1  <1 %", "macOS Beta1  <1 %"));
}

TEST(FleetPage, FoldsTheSmallestOfManyAndKeepsTheOrder) {
  inspect::Overview overview;
  overview.machines = 1000;
  for (std::int64_t i = 1; i <= 200; ++i) {
    overview.memory.push_back({1024 * i, i % 20 == 0 ? 10U : 2U});
    overview.models.push_back({"Mac" + std::to_string(i), "", 1});
  }
  const std::string page = page::fleet(overview, "huxutil 1");
  const std::vector<std::string> shown = rowsOf(page, "memory", "");
  ASSERT_THAT(shown, SizeIs(13));
  EXPECT_THAT(shown[0], testing::StartsWith("1 GB2"));  // of equals the first
  EXPECT_THAT(shown[2], testing::StartsWith("20 GB10"));
  EXPECT_THAT(shown[12], testing::StartsWith("188 other amounts376"));
  EXPECT_THAT(rowsOf(page, "models", "").at(12), testing::StartsWith("188 other models188"));
  EXPECT_THAT(rowsOf(page, "memory", "/details"), SizeIs(100));
  EXPECT_NE(page.find("<p>and 88 more</p>"), std::string::npos);
}
