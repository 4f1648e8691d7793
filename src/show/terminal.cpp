#include "show/terminal.h"

#include <algorithm>
#include <cstdint>

#include "base/formatString.h"
#include "base/utf8.h"
#include "show/columns.h"

namespace show {

namespace {

// The marks U+200E and U+200F turn nothing around them, and some applications' names begin with
// one.
bool steersTerminals(char32_t character) {
  return (character < 0x20 && character != '\n' && character != '\t') ||
         (character >= 0x7F && character <= 0x9F) || (character >= 0x202A && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069);
}

}  // namespace

Terminal terminalOf(bool isTerminal, int columns, const char* noColor, const char* term) {
  const std::string_view kind = term == nullptr ? "" : term;
  const bool unwanted = noColor != nullptr && *noColor != '\0';
  return {isTerminal, columns > 0 ? columns : Terminal().width,
          isTerminal && !unwanted && !kind.empty() && kind != "dumb"};
}

void writeSafely(std::string_view text, const std::function<void(std::string_view)>& write) {
  std::size_t safe = 0;  // bytes at the front that stay as they are
  while (safe < text.size()) {
    const std::string_view rest = text.substr(safe);
    const std::size_t length = utf8SequenceLength(rest);
    const char32_t character = length == 0 ? 0 : characterAt(rest, length);
    if (length != 0 && !steersTerminals(character)) {
      safe += length;
      continue;
    }
    if (safe != 0) write(text.substr(0, safe));
    write(length == 0 ? formatString("\\x%02X", static_cast<std::uint8_t>(rest.front()))
                      : formatString("\\u%04X", static_cast<unsigned>(character)));
    text = rest.substr(std::max<std::size_t>(length, 1));
    safe = 0;
  }
  if (safe != 0) write(text);
}

std::string onOneLine(std::string_view text) {
  std::string line;
  writeSafely(text, [&line](std::string_view piece) { line += piece; });
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\t'; }, ' ');
  return line;
}

}  // namespace show
