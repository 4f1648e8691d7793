#pragma once

#include <string>
#include <string_view>

namespace fuzz {

// The XML of a property list from a form of which every part is again one, so that a fuzzer need
// not know XML. A line is a value:
//
//   [KEY      begins an array          KEY=TEXT     a text
//   {KEY      begins a dictionary      KEY#NUMBER   an integer, or a real when it has a "."
//   ]         ends the innermost       KEY@DATE     a date, 2019-03-16T08:00:00Z
//                                      KEY!         true
//
// The keys within an array are not looked at, a line of no such form is one of text, and what is
// not ended ends with the last line. The outermost value is an array.
std::string propertyListOf(std::string_view lines);

// A text as its XML has it; "?" for control characters, U+FFFD for what is no UTF-8.
std::string escaped(std::string_view text);

}  // namespace fuzz
