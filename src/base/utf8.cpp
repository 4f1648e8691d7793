#include "base/utf8.h"

#include <algorithm>
#include <cstdint>

std::size_t utf8Length(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, isUtf8Continuation));
}

std::size_t utf8SequenceLength(std::string_view text) {
  const auto byte = [text](std::size_t i) {
    return i < text.size() ? static_cast<std::uint8_t>(text[i]) : std::uint8_t{0};
  };
  const auto continues = [&byte](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) {
      if ((byte(i) & 0xC0) != 0x80) return false;
    }
    return true;
  };
  const std::uint8_t lead = byte(0);
  const std::uint8_t second = byte(1);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return continues(1, 2) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F)) return 0;
    return continues(1, 3) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) return 0;
    return continues(1, 4) ? 4 : 0;
  }
  return 0;
}

std::string validUtf8(std::string_view text) {
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  std::string valid;
  valid.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    valid += length == 0 ? kReplacement : text.substr(0, length);
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return valid;
}
