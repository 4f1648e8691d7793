#include "huxread/salvage.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <regex>
#include <string>

#include "handmade.h"
#include "huxread/layout.h"

namespace huxread {

namespace {

using Damage = Salvaged::Damage;

// Lines that deflate does not shrink to nothing.
std::string manyLines(unsigned seed) {
  std::string text;
  for (unsigned i = 0; i < 40; ++i) {
    seed = seed * 1103515245 + 12345;
    text += "a" + std::to_string(seed) + "=" + std::to_string(seed / 7) + "\n";
  }
  return text;
}

const std::string kAsset = "\xEF\xBB\xBF?keva\n*AssetInfo=\n" + manyLines(1);
const std::string kReport = "<?xml version=\"1.0\"?>\n" + manyLines(2);

// A debug file as the agent writes it.
std::string debugFile() {
  const std::string first = blob(kAsset);
  const std::string second = zlibStream(kReport);
  const std::string header = zlibStream(headerOf({
      {"assetinfo",  first.size() },
      {"customdata", second.size()}
  }));
  return huxFile(first + second, header, true, first.size() + second.size());
}

bool has(const Salvaged& salvaged, SectionType type, const std::string& text) {
  return std::ranges::any_of(salvaged.sections, [&](const SalvagedSection& section) {
    return section.type == type && section.complete && section.text == text;
  });
}

}  // namespace

TEST(Salvage, ReadsACutFileUpToItsEnd) {
  constexpr std::size_t kTooShort = 60;  // the first bytes of a stream give no text
  const std::string file = debugFile();
  const std::size_t first = blob(kAsset).size();
  const std::size_t second = first + zlibStream(kReport).size();
  std::size_t longest = 0;
  for (std::size_t size = 0; size < file.size(); ++size) {
    const Salvaged salvaged = salvage(std::string_view(file).substr(0, size));
    if (salvaged.damage == Damage::Foreign && size < kTooShort) continue;
    ASSERT_EQ(salvaged.damage, Damage::Cut) << size;
    EXPECT_TRUE(salvaged.what.starts_with("cut after byte " + std::to_string(size) + "; section 0"))
        << salvaged.what;
    const std::string& text = salvaged.sections[0].text;
    EXPECT_TRUE(kAsset.starts_with(text));
    EXPECT_GE(text.size(), longest);
    longest = text.size();
    EXPECT_TRUE(size < first || has(salvaged, SectionType::AssetInfo, kAsset)) << size;
    EXPECT_TRUE(size < second || has(salvaged, SectionType::CustomData, kReport)) << size;
  }
  const Salvaged half = salvage(std::string_view(file).substr(0, first / 2));
  EXPECT_EQ(half.what, "cut after byte " + std::to_string(first / 2) +
                           "; section 0 can be read to line " +
                           std::to_string(std::ranges::count(half.sections[0].text, '\n')));
  EXPECT_GT(half.sections[0].text.size(), kAsset.size() / 4);
}

TEST(Salvage, LosesNoSectionToDamageElsewhere) {
  const std::string file = debugFile();
  const std::size_t first = blob(kAsset).size();
  const std::size_t second = first + zlibStream(kReport).size();
  for (std::size_t at = 0; at < file.size(); ++at) {
    std::string damaged = file;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x11);
    const Salvaged salvaged = salvage(damaged);
    const Damage expected = at < file.size() - 4 ? Damage::Damaged : salvaged.damage;
    EXPECT_EQ(salvaged.damage, expected) << at;
    EXPECT_TRUE(at < first || has(salvaged, SectionType::AssetInfo, kAsset)) << at;
    const bool hit = at >= first && at < second;
    EXPECT_TRUE(hit || has(salvaged, SectionType::CustomData, kReport)) << at;
    for (const bool lost : {true, false}) {
      std::string moved = file;
      lost ? moved.erase(at, 1) : moved.insert(at, 1, 'x');
      const Salvaged found = salvage(moved);
      const bool safe = at < first || at >= second || (at == first && !lost);
      EXPECT_TRUE(at < first || has(found, SectionType::AssetInfo, kAsset)) << at << lost;
      EXPECT_TRUE(!safe || has(found, SectionType::CustomData, kReport)) << at << lost;
    }
  }
  const Salvaged moved = salvage("x" + file);
  ASSERT_EQ(moved.sections.size(), 2U);
  for (std::uint32_t i = 0; i < 2; ++i) {
    EXPECT_EQ(moved.sections[i].text, i == 0 ? kAsset : kReport);
    EXPECT_EQ(moved.sections[i].number, i);
  }
}

// Some bytes make a great text: what a file can take is the same however many sections it has.
TEST(Salvage, TakesSoManyBytesForAllTexts) {
  constexpr std::size_t kRest = 100;
  const std::string file = debugFile();
  for (const std::string& each :
       {file, file.substr(0, file.size() - 1), blob(kAsset) + zlibStream(kReport)}) {
    const Salvaged salvaged = salvage(each, kAsset.size() + kRest);
    EXPECT_TRUE(has(salvaged, SectionType::AssetInfo, kAsset));
    EXPECT_EQ(salvaged.sections.at(1).text, kReport.substr(0, kRest));
  }
}

TEST(Salvage, GivesUpAfterManyPlacesThatBeginNothing) {
  const auto behind = [](std::size_t places) {
    std::string begins;
    for (std::size_t i = 0; i < places; ++i) begins += "\x78\x9C";
    return salvage(begins + debugFile()).sections.size();
  };
  EXPECT_EQ(behind(65'000), 2U);
  EXPECT_EQ(behind(66'000), 0U);
}

TEST(Salvage, SaysWhatIsWrong) {
  const std::string file = debugFile();
  const std::size_t first = blob(kAsset).size();
  const std::size_t headerAt = first + zlibStream(kReport).size();
  const std::string whole = "; section 0 can be read whole; section 1 can be read whole";
  const auto with = [&](std::size_t at, std::string_view bytes) {
    return salvage(std::string(file).replace(at, bytes.size(), bytes)).what;
  };
  EXPECT_EQ(salvage(file).what, "");
  EXPECT_EQ(salvage(file).damage, Damage::None);
  EXPECT_EQ(salvage(file).sections.size(), 2U);
  EXPECT_EQ(salvage("").damage, Damage::Foreign);
  EXPECT_EQ(salvage(std::string(100, 'x')).what, "not a snapshot file: bad magic");
  EXPECT_EQ(salvage(zlibStream("any text")).what, "not a snapshot file: bad magic");
  EXPECT_EQ(salvage(zlibStream("<?")).damage, Damage::Foreign);
  EXPECT_EQ(salvage(zlibStream("<?x")).damage, Damage::Cut);
  EXPECT_EQ(salvage(file + "\n").what, "1 bytes stand behind the trailer" + whole);
  EXPECT_EQ(with(file.size() - 4, "HUXX"), "the trailer is damaged or missing" + whole);
  EXPECT_EQ(with(first - 1, "B"), "damaged" + whole);
  EXPECT_EQ(with(0, std::string(headerAt, '\0')),
            "damaged; section 0 can be read to 0 %; section 1 can be read to 0 %");
  EXPECT_EQ(with(headerAt, "y"),
            "header: no valid zlib stream: incorrect header check (near byte 2)" + whole);
  EXPECT_EQ(salvage(file.substr(0, first) + std::string(100, '\0')).what,
            "cut after byte " + std::to_string(first) +
                ", only zeros follow; section 0 can be read whole");
  for (const std::size_t zeros : {16U, 17U}) {  // a few may be data
    const std::string what = salvage(file.substr(0, first) + std::string(zeros, '\0')).what;
    EXPECT_EQ(what.find("only zeros") != std::string::npos, zeros == 17) << what;
  }
  void* const zeros = mmap(nullptr, kMaxFileSize + 1, PROT_READ,
                           MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(zeros, MAP_FAILED);
  EXPECT_EQ(salvage({static_cast<const char*>(zeros), kMaxFileSize + 1}).what,
            "not a snapshot file: has more than 536870912 bytes");
  munmap(zeros, kMaxFileSize + 1);
  std::string halfDamaged = file;
  halfDamaged.replace(first / 2, 9, 9, '\xFF');
  const auto withoutNumbers = [](const std::string& what) {
    return std::regex_replace(what, std::regex("[0-9]+"), "#");
  };
  EXPECT_EQ(withoutNumbers(salvage(halfDamaged).what),
            "damaged; section # can be read to # %; section # can be read whole");
  SalvagedSection half;
  half.length = 200;
  half.used = 100;
  EXPECT_EQ(extentOf(half), "section 0 can be read to 50 %");
  halfDamaged.replace(headerAt, 1, "y");
  EXPECT_EQ(
      withoutNumbers(salvage(halfDamaged).what),
      "header: no valid zlib stream: incorrect header check (near byte #); section # can be read "
      "to line #; section # can be read whole");
}

TEST(Salvage, FindsSectionsWithoutAHeader) {
  const std::string start = "\xEF\xBB\xBF?keva\n";
  const std::string other = blob(start + "*Other=\n");
  std::string file = blob(start + "+Snapshot=\n-\n") + zlibStream("<?xml?>") +
                     blob(start + "*AssetInfo=\n") + other.substr(0, other.size() - 1) + "B" +
                     other;
  const auto told = [](const std::string& bytes) {
    std::string text;
    for (const SalvagedSection& section : salvage(bytes).sections) {
      text += typeName(section.type) + (" " + section.problem) + "\n";
    }
    return text;
  };
  const std::string all =
      "snapshot \ncustomdata \nassetinfo \nunknown the end of its block is damaged\n";
  EXPECT_EQ(told(file), all + "unknown \n");
  EXPECT_EQ(told(file.substr(0, file.size() - 1)),
            all + "unknown the end of its block is cut off\n");
  file.clear();
  for (int i = 0; i < 1001; ++i) file += zlibStream("<?xml?>");
  const Salvaged many = salvage(file);
  EXPECT_EQ(many.sections.size(), 1000U);
  EXPECT_TRUE(many.what.ends_with("; section 7 can be read whole; 992 more sections")) << many.what;
  EXPECT_EQ(salvage(fileOfOne("customdata", zlibStream("a") + "bcd")).sections[0].problem,
            "3 bytes stand behind the end of the zlib stream");
  EXPECT_EQ(salvage(fileOfOne("customdata", "")).what, "damaged; section 0 can be read to 0 %");
}

}  // namespace huxread
