#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "huxread/result.h"

namespace huxread {

// How far a zlib stream (RFC 1950) could be read.
struct Inflated {
  enum class End { Complete, CutOff, TooLong, Damaged };

  std::string text;      // all that was inflated; what was taken from damaged bytes may be wrong
  std::size_t used = 0;  // bytes that were read: the stream's length when it is complete
  End end = End::Damaged;
  std::string problem;  // why it went no further; "" when it is complete
};

// Inflates the stream that `bytes`, of less than 4 GiB, begin with, up to its end, to the first
// fault or to `limit` bytes of text: a few kilobytes can inflate to gigabytes. It takes room for
// what is `expected` at once.
Inflated inflateAll(std::string_view bytes, std::size_t limit, std::size_t expected = 0);

// The text of the one zlib stream that `stream` consists of. Fails when it is not complete, and
// when anything follows it.
Result<std::string> inflateText(std::string_view stream, std::size_t limit);

}  // namespace huxread
