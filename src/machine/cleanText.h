#pragma once

#include <string>
#include <string_view>

#include "machine/description.h"

// Texts of a file, which are anybody's bytes, as the tables hold them.

namespace machine {

// Valid UTF-8 whose only control characters are line feeds: a carriage return, alone or before a
// line feed, becomes one, a tab a blank, and every other control character and every byte that is
// no UTF-8 becomes U+FFFD.
std::string cleanText(std::string_view text);

// The same without blanks and line ends around it; nothing when nothing is left.
Value textValue(std::string_view text);

// The same; nothing for a text that stands in for a missing one: "unknown", "Not Provided", in any
// case.
Value statedValue(std::string_view text);

// With one blank where several stand in a row: "Intel(R) Xeon(R) CPU           E5".
std::string oneBlank(std::string_view text);

}  // namespace machine
