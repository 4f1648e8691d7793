#include "fleet/entries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "huxread/handmade.h"

TEST(Entries, AreThoseOfEverySectionThatCanBeRead) {
  const std::string inventory =
      "\xEF\xBB\xBF?keva\n+AssetInfo=\na=1\n~p=x\n+L=\n*t:1=v\n~q=y\nb=2\n*t:2=\n-\n-\n";
  const std::string report =
      "<?xml version=\"1.0\"?>\n<plist><array><dict><key>_dataType</key><string>SPXDataType"
      "</string><key>_items</key><array><dict><key>a</key><true/></dict></array></dict></array>"
      "</plist>";
  std::string data;
  std::vector<std::pair<std::string, std::size_t>> sizes;
  const auto section = [&](const char* type, const std::string& bytes) {
    data += bytes;
    sizes.emplace_back(type, bytes.size());
  };
  section("assetinfo", "damaged");
  section("assetinfo", blob(inventory));
  section("customdata", zlibStream("<?xml no report"));
  section("customdata", zlibStream(report));
  fleet::Entries entries(*huxread::Container::parse(huxFile(data, headerOf(sizes))));
  std::vector<std::string> all;
  while (const fleet::Entry* entry = entries.next()) {
    all.push_back(std::string(entry->document) + " " + entry->path + "=" + entry->value);
  }
  EXPECT_THAT(all, testing::ElementsAre("assetinfo /a=1", "assetinfo /a~p=x", "assetinfo /L/t:1/=v",
                                        "assetinfo /L/t:1/~q=y", "assetinfo /L/t:1/b=2",
                                        "customdata /SPXDataType/1/a=true"));
  EXPECT_EQ(entries.next(), nullptr) << "behind the end";
}
