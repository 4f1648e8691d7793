#pragma once

#include <functional>
#include <string>
#include <string_view>

// Whoever looks at a text, and how a text is made fit for it.

namespace show {

struct Terminal {
  bool terminal = false;  // a person looks at it; else a file or another program takes it
  int width = 80;         // columns of it
  bool colour = false;    // never without `terminal`
};

// What a stream is, by the facts that the caller asks of the system: isatty(3) and the columns of
// the window, 0 when they are not known; the values of NO_COLOR (https://no-color.org: any value
// but
// "" switches colours off) and TERM ("dumb" or nothing: a terminal without colours), null when
// unset.
Terminal terminalOf(bool isTerminal, int columns, const char* noColor, const char* term);

// Writes any bytes so that none of them steers a terminal, in pieces, without a copy of the text:
// control characters and those that turn the direction of a text (UAX #9: U+202A to U+202E, U+2066
// to U+2069) become "\u001B", bytes that are no UTF-8 become "\x9B". Line feeds and tabs stay. So
// JSON stays JSON, since there such a character only stands within texts. A backslash stays as it
// is: what is printed is for eyes, not for reading back.
void writeSafely(std::string_view text, const std::function<void(std::string_view)>& write);

// The same of a text that shares its line with others: line feeds and tabs become blanks.
std::string onOneLine(std::string_view text);

}  // namespace show
