#include "edid/edid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "base/formatString.h"
#include "support/fileText.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const std::filesystem::path kBlocks = PROJECT_FOLDER "/tests/postprocess/displays/blocks";

Bytes blockOf(const std::string& name) {
  const std::string text = fileText(kBlocks / (name + ".hex"));
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += text[i] == '\n' ? 1 : 2) {
    if (text[i] == '\n') continue;
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(text.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

// As the texts of ./blocks have it.
std::string describe(const Edid& edid) {
  const auto range = [](Edid::Range limits) {
    return std::to_string(limits.min) + "-" + std::to_string(limits.max);
  };
  const auto next = [](const std::string& fact) { return fact.empty() ? " |" : " | " + fact; };
  std::string text =
      edid.manufacturer + formatString(" %04x", edid.product) + next(edid.name) +
      next(edid.serial) + next(edid.date) + "\n" +
      formatString("%u.%u %s", edid.version, edid.revision, edid.digital ? "digital" : "analog") +
      formatString(" | %ux%u mm", edid.width, edid.height) + " | " + range(edid.vertical) +
      " Hz | " + range(edid.horizontal) + " kHz | " + std::to_string(edid.maxPixelClock) + " MHz\n";
  for (const VideoMode& mode : edid.modes) {
    const bool isPreferred = edid.hasPreferred && &mode == edid.modes.data();
    text += formatString("%ux%u%s %.2f%s\n", mode.width, mode.height, mode.interlaced ? "i" : "",
                         mode.rate, isPreferred ? " preferred" : "");
  }
  return text;
}

}  // namespace

// Every text is what edid-decode says, but for what a block only seems to state:
//   gaming, television, stripped, manyBlocks   serial numbers that stand in for a missing one
//   television         a picture of 16 by 9 millimetres, which is its ratio
//   tube               a pixel clock with all bits set
//   projector          a name with a byte that is no ASCII, where edid-decode lets it end
//   damagedExtension   modes of a data block that leaves its area, and behind an area of 200 bytes
TEST(Edid, SaysOfTheBlocksWhatAnotherDecoderSays) {
  for (const auto& entry : std::filesystem::directory_iterator(kBlocks)) {
    if (entry.path().extension() != ".txt") continue;
    const auto edid = decodeEdid(blockOf(entry.path().stem()));
    ASSERT_TRUE(edid.has_value()) << entry.path();
    EXPECT_EQ(describe(*edid), fileText(entry.path())) << entry.path();
  }
}

// In memory that ends where the bytes end, for the sanitizers.
TEST(Edid, ReadsWholeBlocks) {
  for (const char* name : {"television", "manyBlocks", "damagedExtension"}) {
    const Bytes whole = blockOf(name);
    std::string said;  // of the whole blocks so far
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      const auto bytes = std::make_unique<std::uint8_t[]>(size);
      std::copy_n(whole.begin(), size, bytes.get());
      const auto edid = decodeEdid({bytes.get(), size});
      ASSERT_EQ(edid.has_value(), size >= 128) << name << size;
      if (size % 128 == 0 && edid) said = describe(*edid);
      EXPECT_EQ(edid ? describe(*edid) : "", said) << name << size;
    }
  }
}

TEST(Edid, KnowsNumbersThatStateNothing) {
  EXPECT_EQ(manufacturerName(0x0610), "APP");
  EXPECT_EQ(manufacturerName(0x6B5A), "ZZZ");
  EXPECT_EQ(serialNumber(0xFFFFFFFE), "4294967294");
  EXPECT_EQ(serialNumber(1010101), "1010101");
  for (const std::uint32_t none : {0U, 0x1006U, 0x0401U, 0x6C21U, 0x10610U}) {
    EXPECT_EQ(manufacturerName(none), "") << none;
  }
  for (const std::uint32_t none : {0U, 1U, 0x01010101U, 0xFD626D62U, 0xFFFFFFFFU}) {
    EXPECT_EQ(serialNumber(none), "") << none;
  }
  for (unsigned number = 0; number <= 255; ++number) {
    const bool states = (number >= 1 && number <= 127) || (number >= 193 && number <= 219);
    EXPECT_EQ(ctaMode(number).has_value(), states) << number;
  }
}

TEST(Edid, CountsWeeksFromNewYear) {
  const std::tuple<std::uint32_t, std::uint32_t, const char*> kCases[] = {
      {10, 2016, "2016-03-04"},
      {10, 2015, "2015-03-05"},
      {54, 2015, "2016-01-07"},
      {55, 2015, "2015-01-01"},
      {0,  1990, ""          },
      {3,  1990, "1990-01-15"},
      {10, 1989, ""          },
      {10, 2246, ""          },
  };
  for (const auto& [week, year, date] : kCases) {
    EXPECT_EQ(manufactureDate(week, year), date) << week << " of " << year;
  }
}
