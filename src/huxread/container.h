#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/header.h"
#include "huxread/layout.h"
#include "huxread/result.h"

namespace huxread {

// All bytes of a file, or of what is left of it; of one that exceeds kMaxFileSize only the first,
// some more than that. Fails when it cannot be read, with the system's reason.
Result<std::string> readFile(const std::string& path);
Result<std::string> readFile(std::FILE* file);

// A snapshot file in memory. It owns the bytes.
class Container {
 public:
  // Reads the file. Fails as readFile and as parse do.
  static Result<Container> open(const std::string& path);

  // Fails as readLayout does. The sections themselves are not looked at.
  static Result<Container> parse(std::string bytes);

  // The same, and when it fails `bytes` are as they were, for salvage to look at.
  static Result<Container> take(std::string& bytes);

  // The header as the file states it.
  const std::string& headerText() const { return layout_.headerText; }

  // By increasing number. May be empty.
  const std::vector<Section>& sections() const { return layout_.sections; }

  // What is odd about the header and what of it was passed over, in words.
  const std::vector<std::string>& remarks() const { return layout_.remarks; }

  // What the section was made from: the text form of its document, or custom data byte for byte.
  // One of an unknown type is read as what it looks like. Fails when there is no section of that
  // number, when a document is not stored as one compressed block, when its stream is damaged, and
  // beyond kMaxTextSize.
  Result<std::string> text(std::uint32_t number) const;

 private:
  Container(std::string bytes, Layout layout);

  std::string bytes_;
  Layout layout_;
};

}  // namespace huxread
