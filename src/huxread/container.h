#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/header.h"
#include "huxread/result.h"

// Reads snapshot files, docs/hux-format.md draws them. The bytes may come from anyone: every offset
// and every length is checked before it is used, and nothing inflates without a limit.

namespace huxread {

// Limits, in bytes. The largest text that is known, the raw report of a Mac with 100,000
// applications, has 90 MB; a hundred times the usual header has 20 kB. What a hostile file can make
// a program hold is the file and one text, which while it grows takes up to three times its size.
inline constexpr std::size_t kMaxFileSize = std::size_t{256} << 20;
inline constexpr std::size_t kMaxTextSize = std::size_t{256} << 20;
inline constexpr std::size_t kMaxHeaderSize = std::size_t{1} << 20;

// A snapshot file in memory. It owns the bytes.
class Container {
 public:
  // Reads the file at `path`. Fails when it cannot be read, with the system's reason, or exceeds
  // kMaxFileSize, and as parse does.
  static Result<Container> open(const std::string& path);

  // Fails when the trailer is not that of a snapshot file, when it leads to no readable header of
  // at most kMaxHeaderSize, and when sections overlap or do not lie before the header. The sections
  // themselves are not looked at.
  static Result<Container> parse(std::string bytes);

  // The header as the file states it.
  const std::string& headerText() const { return headerText_; }

  // By increasing number. May be empty.
  const std::vector<Section>& sections() const { return sections_; }

  // What the section was made from: the text form of its document, or custom data byte for byte.
  // Fails when there is no section of that number, when a document is not stored as one compressed
  // block, when its stream is damaged, and beyond kMaxTextSize.
  Result<std::string> text(std::uint32_t number) const;

 private:
  Container(std::string bytes, std::string headerText, std::vector<Section> sections);

  std::string bytes_;
  std::string headerText_;
  std::vector<Section> sections_;
};

}  // namespace huxread
