#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace redact {

// Finds any number of texts in one pass (Aho and Corasick, "Efficient String Matching", 1975).
class Matcher {
 public:
  // Texts in all take so many bytes at most: what a hostile file can make a table of.
  static constexpr std::size_t kMostNodes = std::size_t{1} << 19;

  struct Text {
    std::string_view text;
    std::size_t id;
  };

  // Empty when there are too many. Of equal texts the first one counts.
  static std::optional<Matcher> make(const std::vector<Text>& texts);

  // Hands over every occurrence, also those within others, by their ends.
  void find(
      std::string_view text,
      const std::function<void(std::size_t begin, std::size_t end, std::size_t id)>& take) const;

 private:
  struct Node {
    std::uint32_t fallback = 0;  // the longest other text that this one ends with
    std::uint32_t shorter = 0;   // the next fallback at which a text ends; 0 when there is none
    std::size_t id = 0;
    std::uint32_t length = 0;  // of the text that ends here; 0 when none does
  };

  void add(const Text& text);
  void link();
  std::uint32_t& next(std::uint32_t node, unsigned char byte) {
    return next_[node * classes_ + class_[byte]];
  }

  std::array<std::uint8_t, 256> class_{};  // of bytes; 0 for those that no text holds
  std::size_t classes_ = 1;
  std::vector<Node> nodes_{1};
  std::vector<std::uint32_t> next_;  // by node and class
};

}  // namespace redact
