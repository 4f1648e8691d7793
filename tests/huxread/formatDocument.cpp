#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "huxread/container.h"

// Holds the example of docs/hux-format.md true: its bytes, read, give what the page says of them.

namespace {

// The blocks between lines of three backquotes behind the last heading.
std::vector<std::string> exampleBlocks() {
  std::ifstream page(PROJECT_FOLDER "/docs/hux-format.md");
  std::vector<std::string> blocks;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("## ")) {
      blocks.clear();
    } else if (line == "```") {
      inside = !inside;
      if (inside) blocks.emplace_back();
    } else if (inside) {
      blocks.back() += (line.starts_with("<BOM>") ? "\xEF\xBB\xBF" + line.substr(5) : line) + "\n";
    }
  }
  return blocks;
}

// The bytes of "offset  two digits for each byte   note" lines, whose offsets must be right.
std::string bytesOf(const std::string& dump) {
  constexpr std::size_t kFirst = 5;   // column of the first byte
  constexpr std::size_t kNotes = 53;  // column behind the sixteenth
  std::string bytes;
  std::istringstream lines(dump);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) continue;
    EXPECT_EQ(std::stoul(line, nullptr, 16), bytes.size()) << line;
    std::istringstream digits(line.substr(kFirst, kNotes - kFirst));
    for (std::string pair; digits >> pair;) {
      bytes += static_cast<char>(std::stoul(pair, nullptr, 16));
    }
  }
  return bytes;
}

}  // namespace

TEST(FormatDocument, ShowsAFileThatReadsAsItSays) {
  const std::vector<std::string> blocks = exampleBlocks();
  ASSERT_EQ(blocks.size(), 5U);
  const std::string bytes = bytesOf(blocks[0]);
  EXPECT_EQ(bytes.size(), 310U);
  const auto container = huxread::Container::parse(bytes);
  ASSERT_TRUE(container) << container.error().message;
  EXPECT_EQ(container->headerText(), blocks[1]);
  EXPECT_EQ(*container->text(0), blocks[3]);
  EXPECT_EQ(*container->text(1), blocks[4]);
}
