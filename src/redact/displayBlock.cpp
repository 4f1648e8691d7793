#include "redact/displayBlock.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

#include "base/formatString.h"
#include "base/text.h"

namespace redact {

namespace {

constexpr std::size_t kBlock = 128;  // bytes; extensions follow

std::string_view prefixOf(std::string_view text) {
  return text.starts_with("0x") ? text.substr(0, 2) : "";
}

// None when it is anything else than digits.
std::vector<std::uint8_t> bytesOf(std::string_view block) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::string text = toLower(block.substr(prefixOf(block).size()));
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    const std::size_t high = kDigits.find(text[i]);
    const std::size_t low = kDigits.find(text[i + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return {};
    bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
  }
  return bytes;
}

// The bytes of a block add up to 0.
void setCheckSum(std::vector<std::uint8_t>& bytes) {
  unsigned sum = 0;
  for (std::size_t i = 0; i + 1 < kBlock; ++i) sum += bytes[i];
  bytes[kBlock - 1] = static_cast<std::uint8_t>(0x100 - sum % 0x100);
}

}  // namespace

bool isDisplayBlock(std::string_view text) {
  return bytesOf(text).size() >= kBlock;
}

bool statesDisplay(std::uint32_t number) {
  constexpr std::uint32_t kNone[] = {0, 1, 0x01010101, 0xFD626D62, 0xFFFFFFFF};
  return std::ranges::find(kNone, number) == std::end(kNone);
}

std::optional<std::pair<std::string, unsigned>> displayBlockWithout(
    std::string_view digits,
    const std::function<std::optional<unsigned>(const std::string& serial)>& find) {
  std::vector<std::uint8_t> bytes = bytesOf(digits);
  if (bytes.size() < kBlock) return std::nullopt;
  unsigned last = 0;
  for (const std::size_t at : {54U, 72U, 90U, 108U}) {  // the descriptors, of 18 bytes
    constexpr std::size_t kText = 13;
    if (bytes[at] != 0 || bytes[at + 1] != 0 || bytes[at + 3] != 0xFF) continue;
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(at + 5);
    std::string serial(first, std::find(first, first + kText, std::uint8_t{'\n'}));
    TrimChars(serial, std::string_view(" \0", 2), kTrimBoth);
    if (const auto token = find(serial)) {
      std::string text = formatString("%u\n", *token);
      text.resize(kText, ' ');
      std::ranges::copy(text, first);
      last = *token;
    }
  }
  std::uint32_t number = 0;  // the lowest byte first
  for (std::size_t i = 4; i > 0; --i) number = number << 8 | bytes[11 + i];
  const auto token = statesDisplay(number) ? find(formatString("%u", number)) : std::nullopt;
  if (token || (last != 0 && statesDisplay(number))) {
    last = token.value_or(last);
    for (std::size_t i = 0; i < 4; ++i)
      bytes[12 + i] = static_cast<std::uint8_t>(last >> (8 * i) & 0xFF);
  }
  if (last == 0) return std::nullopt;
  setCheckSum(bytes);
  std::string text(prefixOf(digits));
  for (const std::uint8_t byte : bytes) text += formatString("%02x", byte);
  return std::pair(std::move(text), last);
}

}  // namespace redact
