#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>
#include <string_view>

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

// The text of the zlib stream that `rest` begins with, of up to a megabyte; `rest` goes on behind
// it.
inline std::string takeStream(std::string_view& rest) {
  std::string text(1 << 20, '\0');
  uLongf length = text.size();
  uLong used = rest.size();
  EXPECT_EQ(uncompress2(reinterpret_cast<Bytef*>(text.data()), &length,
                        reinterpret_cast<const Bytef*>(rest.data()), &used),
            Z_OK);
  rest.remove_prefix(used);
  text.resize(length);
  return text;
}
