#include "keva/HUXfile.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "base/formatString.h"
#include "bytes.h"
#include "keva/deflate.h"
#include "support/fileText.h"

using namespace std::string_literals;

TEST(HUXfile, ListsItsSectionsBehindThem) {
  for (const bool native : {true, false}) {
    HUXfile file(native);
    std::string all;
    for (const auto& [type, topName] : {
             std::pair{HUXfile::SectionType::Snapshot,       "snapshot"},
             {HUXfile::SectionType::AssetInfo,      "Snapshot"},
             {static_cast<HUXfile::SectionType>(7), "Other"   }
    }) {
      auto document = std::make_unique<kevaDoc>(true, topName);
      document->set("/timestamp", TagValue("now"));
      all += document->pack(false, true);
      file.addDocument(std::move(document), type, false, true);
    }
    EXPECT_FALSE(file.hasRawData());
    file.addRawData("<plist/>\n");
    EXPECT_TRUE(file.hasRawData());
    all += deflateOrEnd("<plist/>\n", kFileSite);
    const auto size = [&](std::size_t i) { return file.sections()[i].data.size(); };
    const std::string header = formatString(
        "[H]\ncount=4\nsnapshotcount=1\n"  // by the top tags
        "[0]\noffset=0\nlength=%zu\ntype=snapshot\ntimestamp=now\nsnaptype=mac:1\n"
        "[1]\noffset=%zu\nlength=%zu\ntype=assetinfo\n"
        "[3]\noffset=%zu\nlength=%zu\ntype=customdata\nID=rawdata\n",
        size(0), size(0), size(1), all.size() - size(3), size(3));
    std::string offset(7, '\0');
    offset.insert(native ? 0U : 7U, 1, static_cast<char>(all.size()));
    EXPECT_EQ(file.buildImage(false), all + header + offset + "\3\0HUX!"s);
    EXPECT_EQ(file.buildImage(true), all + deflateOrEnd(header, kFileSite) + offset + "\3\1HUX!");
  }
}

TEST(HUXfile, SavesOverWhatWasThere) {
  const std::filesystem::path path = testing::TempDir() + std::to_string(getpid()) + ".hux";
  std::ofstream(path) << std::string(10000, 'x');
  HUXfile file(true);
  EXPECT_TRUE(file.save(path, true));
  EXPECT_EQ(fileText(path), file.buildImage(true));
  std::filesystem::remove(path);
  EXPECT_FALSE(file.save(path / "a.hux", true));
}
