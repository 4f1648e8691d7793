#include "machine/cleanText.h"

#include <algorithm>

#include "base/text.h"
#include "base/utf8.h"

namespace machine {
namespace {

// Whether a character of valid UTF-8 is a control character: U+0000 to U+001F, U+007F to U+009F.
bool isControl(std::string_view character) {
  const auto byte = static_cast<unsigned char>(character.back());
  if (character.size() == 1) return byte < 0x20 || byte == 0x7F;
  return character.front() == '\xC2' && byte < 0xA0;
}

}  // namespace

std::string cleanText(std::string_view text) {
  const auto needsCare = [](char c) { return (c < ' ') | (c > '~'); };
  if (!holdsAny(text, needsCare)) return std::string(text);
  std::string clean;
  for (;;) {
    const auto* const rest = std::ranges::find_if(text, needsCare);
    clean.append(text.begin(), rest);
    text.remove_prefix(static_cast<std::size_t>(rest - text.begin()));
    if (text.empty()) return clean;
    const std::size_t length = utf8SequenceLength(text);
    const std::string_view character = text.substr(0, length);
    if (text.starts_with("\r\n")) {
      // the line feed is next
    } else if (character == "\r" || character == "\n") {
      clean += '\n';
    } else if (character == "\t") {
      clean += ' ';
    } else if (length == 0 || isControl(character)) {
      clean += "\xEF\xBF\xBD";
    } else {
      clean += character;
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
}

Value textValue(std::string_view text) {
  std::string clean = cleanText(text);
  TrimChars(clean, " \n", kTrimBoth);
  if (clean.empty()) return {};
  return clean;
}

Value statedValue(std::string_view text) {
  Value stated = textValue(text);
  const std::string lower = toLower(textOf(stated));
  return lower == "unknown" || lower == "not provided" ? Value() : stated;
}

std::string oneBlank(std::string_view text) {
  std::string normal;
  for (const char c : text) {
    if (c != ' ' || !normal.ends_with(' ')) normal += c;
  }
  return normal;
}

}  // namespace machine
