#pragma once

#include <cstdint>
#include <string>

#include "huxread/container.h"

// The text of a section of a snapshot file, read independently of what wrote it; what is wrong,
// when it cannot be read.
inline std::string sectionOf(const std::string& path, std::uint32_t number) {
  const auto file = huxread::Container::open(path);
  if (!file) return file.error().message;
  const auto text = file->text(number);
  return text ? *text : text.error().message;
}
