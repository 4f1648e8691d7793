#include "huxread/container.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "handmade.h"
#include "huxread/check.h"

namespace huxread {

namespace {

std::string problemOf(const std::string& file) {
  const auto container = Container::parse(file);
  return container ? "" : container.error().message;
}

std::string place(unsigned offset, unsigned length) {
  return "offset=" + std::to_string(offset) + "\nlength=" + std::to_string(length) +
         "\ntype=customdata\n";
}

}  // namespace

TEST(Container, GivesTheTextOfEverySection) {
  const std::string data = blob("a document") + zlibStream("raw data");
  const auto split = static_cast<unsigned>(blob("a document").size());
  const std::string header =
      "[H]\ncount=4\nsnapshotcount=1\n[0]\noffset=0\nlength=" + std::to_string(split) +
      "\ntype=snapshot\n[3]\n" + place(split, static_cast<unsigned>(data.size()) - split);
  const std::string stream = zlibStream(header);
  std::string swapped = huxFile(data, stream, true, data.size());
  std::reverse(swapped.end() - 14, swapped.end() - 6);
  for (const std::string& file :
       {huxFile(data, header), huxFile(data, stream, true, data.size()), swapped}) {
    const auto container = Container::parse(file);
    ASSERT_TRUE(container) << container.error().message;
    EXPECT_EQ(container->headerText(), header);
    EXPECT_EQ(*container->text(0), "a document");
    EXPECT_EQ(*container->text(3), "raw data");
    EXPECT_EQ(container->text(1).error().message, "there is no section 1");
    EXPECT_EQ(container->text(4).error().message, "there is no section 4");
  }
}

TEST(Container, ReadsFilesOfAnyLength) {
  for (const std::size_t size : {0U, 65536U, 200'000U}) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
    const std::string bytes(size, 'x');
    ASSERT_EQ(std::fwrite(bytes.data(), 1, size, file.get()), size);
    std::rewind(file.get());
    const Result<std::string> read = readFile(file.get());
    EXPECT_TRUE(read && *read == bytes) << size;
  }
}

TEST(Container, RefusesWhatIsNoSnapshotFile) {
  const std::string good = huxFile("12345", "[H]\ncount=0\nsnapshotcount=0\n");
  ASSERT_EQ(problemOf(good), "");
  const std::size_t end = good.size() - 14;
  const auto changed = [&](std::size_t index, char byte) {
    return problemOf(std::string(good).replace(index, 1, 1, byte));
  };
  EXPECT_EQ(problemOf(good.substr(end + 1)), "not a snapshot file: only 13 bytes long");
  EXPECT_EQ(problemOf(good + "\n"), "not a snapshot file: bad magic");
  EXPECT_EQ(changed(end + 8, 4), "trailer: version 4 of the format, only 3 is known");
  EXPECT_EQ(changed(end + 9, 2), "trailer: the compressed flag is 2, neither 0 nor 1");
  EXPECT_EQ(changed(end, 34), "trailer: header offset 34 lies beyond the data (33 bytes)");
  EXPECT_EQ(changed(end, 33), "header: does not begin with [H]");
  std::string header(kMaxHeaderSize + 1, '\n');
  EXPECT_EQ(problemOf(huxFile("", header)), "header: has more than 1048576 bytes");
  EXPECT_EQ(problemOf(huxFile("", zlibStream(header), true, 0)),
            "header: inflates to more than 1048576 bytes");
  header.pop_back();
  for (const auto& full : {huxFile("", header), huxFile("", zlibStream(header), true, 0)}) {
    EXPECT_EQ(problemOf(full), "header: line 1 is no entry of a group");
  }
}

TEST(Container, RefusesSectionsThatOverlapOrLeaveTheData) {
  const auto problemWith = [](const std::string& first, const std::string& second) {
    return problemOf(huxFile(std::string(412, ' '),
                             "[H]\ncount=2\nsnapshotcount=0\n[0]\n" + first + "[1]\n" + second));
  };
  EXPECT_EQ(problemWith(place(12, 400), place(0, 12)), "");
  EXPECT_EQ(problemWith(place(100, 0), place(0, 412)), "");
  EXPECT_EQ(problemWith(place(0, 412), place(412, 0)), "");
  EXPECT_EQ(problemWith(place(12, 400), place(0, 13)), "section 0: overlaps section 1");
  EXPECT_EQ(problemWith(place(0, 1), place(500, 0)),
            "section 1: offset 500 lies beyond the data (412 bytes)");
  EXPECT_EQ(problemWith(place(0, 1), place(2, 411)),
            "section 1: length 411 from offset 2 reaches beyond the data (412 bytes)");
  EXPECT_EQ(problemWith(place(0, 1), place(2, 4294967295)),
            "section 1: length 4294967295 from offset 2 reaches beyond the data (412 bytes)");
}

TEST(Container, KeepsWhatItDoesNotKnowAndSaysSo) {
  const std::string data = blob("a document") + zlibStream("raw data") + "gap";
  const auto size = static_cast<unsigned>(blob("a document").size());
  const auto rest = static_cast<unsigned>(data.size()) - size - 3;
  std::string header = "[H]\ncount=6\nsnapshotcount=1\n[1]\n" + place(0, size) +
                       "note=\n[4]\ntipe=snapshot\n" + place(size, rest);
  header.replace(header.find("type=custom"), 11, "type=\33ustom");
  header.erase(header.find("type=customdata\n"));
  const auto container = Container::parse(huxFile(data, header));
  ASSERT_TRUE(container) << container.error().message;
  EXPECT_EQ(container->sections()[0].type, SectionType::Unknown);
  EXPECT_EQ(*container->text(1), "a document");
  EXPECT_EQ(*container->text(4), "raw data");
  const std::string end = std::to_string(data.size() - 1);
  const std::vector<std::string> remarks = {
      "header: the key of line 8 is not known",
      "header: the key of line 10 is not known",
      "section 0: counted but not listed",
      "sections 2 to 3: counted but not listed",
      "section 5: counted but not listed",
      "header: counts 1 documents of type snapshot and lists 0",
      "bytes " + std::to_string(data.size() - 3) + " to " + end +
          " of the file belong to no section"};
  EXPECT_EQ(container->remarks(), remarks);
}

TEST(Container, NamesWhatLiesBetweenSections) {
  const auto file = Container::parse(huxFile(
      "0123456789", "[H]\ncount=2\nsnapshotcount=0\n[0]\n" + place(6, 4) + "[1]\n" + place(1, 2)));
  ASSERT_TRUE(file);
  const std::vector<std::string> remarks = {"bytes 0 to 0 of the file belong to no section",
                                            "bytes 3 to 5 of the file belong to no section"};
  EXPECT_EQ(file->remarks(), remarks);
}

// A header that is not compressed has no checksum.
TEST(Container, LosesNoSectionToAByteOfAPlainHeaderWithoutAWord) {
  const std::string data = blob("?keva\n") + zlibStream("<a/>");
  const auto split = static_cast<unsigned>(blob("?keva\n").size());
  const std::string header =
      "[H]\ncount=2\nsnapshotcount=0\n[0]\noffset=0\nlength=" + std::to_string(split) +
      "\ntype=assetinfo\n[1]\n" + place(split, static_cast<unsigned>(data.size()) - split);
  const auto places = [](const Container& file) {
    std::vector<std::tuple<unsigned, SectionType, unsigned, unsigned>> sections;
    for (const Section& section : file.sections()) {
      sections.emplace_back(section.number, section.type, section.offset, section.length);
    }
    return sections;
  };
  const std::string whole = huxFile(data, header);
  const auto right = places(*Container::parse(whole));
  for (std::size_t at = data.size(); at < whole.size(); ++at) {
    for (int bits = 1; bits < 256; ++bits) {
      std::string damaged = whole;
      damaged[at] = static_cast<char>(damaged[at] ^ bits);
      const auto file = Container::parse(damaged);
      if (!file || !file->remarks().empty() || places(*file) == right) continue;
      const bool told = std::ranges::any_of(check(*file), [](const Problem& problem) {
        return problem.kind != Problem::Kind::Text;  // the texts here are no documents anyhow
      });
      EXPECT_TRUE(told) << "byte " << at - data.size() << " of the header, ^ " << bits;
    }
  }
}

TEST(Container, SaysWhyASectionCannotBeInflated) {
  const auto problemWith = [](const char* type, const std::string& data) {
    const auto text = Container::parse(fileOfOne(type, data))->text(0);
    return text ? "" : text.error().message;
  };
  EXPECT_EQ(problemWith("snapshot", "\1KEVA"), "section 0: not a compressed document: bad magic");
  EXPECT_EQ(problemWith("snapshot", {"\0\1KEVA", 6}),
            "section 0: the zlib stream is cut off after 0 bytes");
  EXPECT_EQ(problemWith("assetinfo", "x\1\1KEVA"),
            "section 0: not a compressed document: layout flags 1, 1 instead of 0, 1");
  EXPECT_EQ(problemWith("customdata", blob("x")),
            "section 0: 6 bytes stand behind the end of the zlib stream");
  std::string stream = zlibStream("all is well");
  EXPECT_EQ(problemWith("customdata", stream.substr(0, 10)),
            "section 0: the zlib stream is cut off after 10 bytes");
  stream.back() ^= 1;
  EXPECT_EQ(problemWith("customdata", stream),
            "section 0: no valid zlib stream: incorrect data check (near byte 19)");
  EXPECT_EQ(problemWith("customdata", "\x78\xbb\1\2\3\4"),
            "section 0: the zlib stream needs a dictionary");
}

}  // namespace huxread
