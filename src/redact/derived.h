#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace redact {

// A text that was made from another one by leaving some of it out, and where its bytes stood there.
class Derived {
 public:
  // `end` is that of the bytes of the other text that they stand for.
  void add(std::string_view bytes, std::size_t begin, std::size_t end);

  const std::string& text() const { return text_; }

  // The part of the other text that a part of this one, which is not empty, was.
  std::pair<std::size_t, std::size_t> origin(std::size_t begin, std::size_t end) const;

 private:
  struct Run {  // bytes that stood together, or the one character that an entity is
    std::size_t at;
    std::size_t begin;
    std::size_t end;
  };

  const Run& runAt(std::size_t at) const;

  std::string text_;
  std::vector<Run> runs_;
};

// A text with the five entities of XML and numeric references as characters.
Derived withoutEntities(std::string_view text);

// One without blanks, "-", "_", ":", "." and "%2d", which stand within numbers. Takes small
// letters.
Derived withoutSeparators(std::string_view text);

}  // namespace redact
