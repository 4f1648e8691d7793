#include "base/digits.h"

#include <algorithm>
#include <charconv>

namespace {

std::string_view withoutPrefix(std::string_view hexadecimal) {
  const bool hasPrefix = hexadecimal.starts_with("0x") || hexadecimal.starts_with("0X");
  return hexadecimal.substr(hasPrefix ? 2 : 0);
}

template <typename Unsigned>
std::optional<Unsigned> numberIn(std::string_view text, int base) {
  Unsigned number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

}  // namespace

bool hasShape(std::string_view text, std::string_view shape) {
  return std::ranges::equal(text, shape,
                            [](char c, char like) { return like == '0' ? isDigit(c) : c == like; });
}

std::optional<std::uint32_t> decimalNumber(std::string_view text) {
  return numberIn<std::uint32_t>(text, 10);
}

std::optional<std::uint32_t> hexadecimalNumber(std::string_view text) {
  return numberIn<std::uint32_t>(withoutPrefix(text), 16);
}

std::vector<std::uint8_t> hexadecimalBytes(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  if (text.size() % 2 != 0) return bytes;
  for (text = withoutPrefix(text); !text.empty(); text.remove_prefix(2)) {
    const auto byte = numberIn<std::uint8_t>(text.substr(0, 2), 16);
    if (!byte) return {};
    bytes.push_back(*byte);
  }
  return bytes;
}
