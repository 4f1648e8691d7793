#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The columns that texts take on a terminal. They are to be valid UTF-8 without control characters
// (onOneLine).

namespace show {

// The character of the first `length` bytes, which are one sequence of UTF-8.
char32_t characterAt(std::string_view text, std::size_t length);

// Wide characters of East Asia and pictographs take two columns (UAX #11, Unicode 15.0), combining
// marks and invisible characters none. What is not in the tables counts as one, so that a text is
// rather shorter than it was taken for.
std::size_t columnsOf(std::string_view text);

// The text when it fits into so many columns, else its beginning with "…" at the end.
std::string cut(std::string_view text, std::size_t columns);

// The same with blanks behind it up to that width.
std::string padded(std::string_view text, std::size_t columns);

}  // namespace show
