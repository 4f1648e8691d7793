#include "keva/HUXfile.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "base/formatString.h"
#include "bytes.h"
#include "support/fileText.h"

using namespace std::string_literals;

TEST(HUXfile, ListsItsSectionsBehindThem) {
  for (const bool native : {true, false}) {
    HUXfile file(native);
    std::string all;
    for (const auto& [type, topName] : {
             std::pair{HUXfile::SectionType::Snapshot,       "snapshot"},
             {HUXfile::SectionType::AssetInfo,      "Snapshot"},
             {static_cast<HUXfile::SectionType>(7), "Other"   },
             {HUXfile::SectionType::Snapshot,       "timeless"}
    }) {
      auto document = std::make_unique<kevaDoc>(true, topName);
      if (topName != "timeless"s) document->set("/timestamp", TagValue("now"));
      file.addDocument(std::move(document), type, false, true);
      all += file.sections().back().data;
    }
    EXPECT_FALSE(file.hasRawData());
    file.addRawData("<plist/>\n");
    EXPECT_TRUE(file.hasRawData());
    std::string_view raw = file.sections().back().data;
    all += raw;
    EXPECT_EQ(takeStream(raw), "<plist/>\n");
    const auto size = [&](std::size_t i) { return file.sections()[i].data.size(); };
    const std::string header = formatString(
        "[H]\ncount=5\nsnapshotcount=1\n"  // by the top tags
        "[0]\noffset=0\nlength=%zu\ntype=snapshot\ntimestamp=now\nsnaptype=mac:1\n"
        "[1]\noffset=%zu\nlength=%zu\ntype=assetinfo\n"
        "[3]\noffset=%zu\nlength=%zu\ntype=snapshot\ntimestamp=\nsnaptype=mac:1\n"
        "[4]\noffset=%zu\nlength=%zu\ntype=customdata\nID=rawdata\n",
        size(0), size(0), size(1), all.size() - size(4) - size(3), size(3), all.size() - size(4),
        size(4));
    std::string offset(7, '\0');
    offset.insert(native ? 0U : 7U, 1, static_cast<char>(all.size()));
    EXPECT_EQ(file.buildImage(false), all + header + offset + "\3\0HUX!"s);
    const std::string image = file.buildImage(true);
    std::string_view end = std::string_view(image).substr(all.size());
    EXPECT_EQ(takeStream(end), header);
    EXPECT_EQ(end, offset + "\3\1HUX!");
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
