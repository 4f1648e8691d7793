#pragma once

#include <gtest/gtest.h>

#include <string>

#include "keva/kevaDoc.h"

inline const std::string kTextHeader = "\xEF\xBB\xBF?keva\n";

// The text form of a tag; fails the test if it outgrows its estimate or no NUL stands behind it.
inline std::string written(const Tag& tag, bool noEndMark = false, bool noChildren = false) {
  constexpr std::size_t kSlack = 102;
  const std::size_t room = tag.textSize(false) + kSlack;
  std::string buffer(room + 1, 'x');
  const std::size_t size = tag.writeText(buffer.data(), 0, noEndMark, noChildren);
  EXPECT_LE(size, room);
  EXPECT_EQ(buffer[size], '\0');
  return buffer.substr(0, size);
}
