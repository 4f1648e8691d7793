#include "platform/portable/bundleFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform/shown.h"
#include "support/workingFolder.h"

class BundleFolder : public WorkingFolder {};

TEST_F(BundleFolder, HasTheScalarsOfEachBundleWhereverTheyStand) {
  for (const std::string place : {"Contents", "Resources", "Support Files", "."}) {
    const std::string folder = pathOf("folder/" + place + ".plugin/" + place);
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/Info.plist")
        << "<dict><key>d</key><dict/><key>a</key><array/><key>k</key><true/></dict>";
  }
  constexpr std::string_view kKeys[] = {"d", "a", "none", "k"};
  const auto bundles = platform::readBundleFolder(pathOf("folder"), kKeys);
  EXPECT_EQ(bundles.size(), 4U);
  for (const auto& bundle : bundles) EXPECT_EQ(shown(bundle.info), "{ k=true }") << bundle.name;
}

TEST_F(BundleFolder, HasNamesInUtf8) {
  const std::string contents = pathOf("a\xE9/b\xFF.plugin/Contents");
  std::error_code error;
  if (!std::filesystem::create_directories(contents, error)) GTEST_SKIP() << "no such names here";
  std::ofstream(contents + "/Info.plist") << "<dict><key>k</key><true/></dict>";
  constexpr std::string_view kKeys[] = {"k"};
  const auto bundles = platform::readBundleFolder(pathOf("a\xE9"), kKeys);
  ASSERT_EQ(bundles.size(), 1U);
  EXPECT_EQ(bundles[0].name, "b\uFFFD.plugin");
  EXPECT_EQ(bundles[0].path, pathOf("a\uFFFD/b\uFFFD.plugin"));
  EXPECT_TRUE(bundles[0].info.find("k") != nullptr);
}
