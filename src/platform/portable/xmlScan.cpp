#include "platform/portable/xmlScan.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "base/utf8.h"

namespace platform {

namespace {

bool isCodePoint(std::string_view digits, int base) {
  std::uint32_t code = 0;
  const char* end = digits.data() + digits.size();
  const auto [last, error] = std::from_chars(digits.data(), end, code, base);
  return error == std::errc() && last == end && code <= 0x10FFFF &&
         (code < 0xD800 || code > 0xDFFF);
}

// `name` is what stands between "&" and ";".
bool isKnownReference(std::string_view name) {
  constexpr std::array<std::string_view, 5> kEntities = {"amp", "lt", "gt", "quot", "apos"};
  if (name.starts_with("#x")) return isCodePoint(name.substr(2), 16);
  if (name.starts_with('#')) return isCodePoint(name.substr(1), 10);
  for (const std::string_view entity : kEntities) {
    if (name == entity) return true;
  }
  return false;
}

// Length of the "</plist>" at the start of `text`, which may have blanks before its ">"; 0 when
// there is none.
std::size_t endTagLength(std::string_view text) {
  constexpr std::string_view kEndTag = "</plist";
  if (!text.starts_with(kEndTag)) return 0;
  const std::size_t end = text.find_first_not_of(" \t\r\n", kEndTag.size());
  return end < text.size() && text[end] == '>' ? end + 1 : 0;
}

}  // namespace

std::optional<XmlScan> scanXml(std::string_view document) {
  constexpr std::string_view kComment = "<!--";
  constexpr std::string_view kCdata = "<![CDATA[";
  constexpr std::size_t kLongestReference = 16;
  bool hasCdata = false;
  std::size_t quietUntil = 0;  // end of the comment or CDATA section that `at` is in
  for (std::size_t at = 0; at < document.size();) {
    const char c = document[at];
    const std::string_view rest = document.substr(at);
    if (c == '\0') return std::nullopt;
    if (static_cast<std::uint8_t>(c) >= 0x80) {
      const std::size_t length = utf8SequenceLength(rest);
      if (length == 0) return std::nullopt;
      at += length;
      continue;
    }
    ++at;
    if (at <= quietUntil) continue;
    if (c == '&') {
      const std::size_t semicolon = rest.substr(0, kLongestReference).find(';');
      if (semicolon == std::string_view::npos) return std::nullopt;
      if (!isKnownReference(rest.substr(1, semicolon - 1))) return std::nullopt;
    } else if (c == '<') {
      const std::size_t end = endTagLength(rest);
      if (end != 0) return XmlScan{document.substr(0, at - 1 + end), hasCdata};
      const bool comment = rest.starts_with(kComment);
      if (!comment && !rest.starts_with(kCdata)) continue;
      hasCdata = hasCdata || !comment;
      const std::size_t inside = at - 1 + (comment ? kComment.size() : kCdata.size());
      quietUntil = document.find(comment ? "-->" : "]]>", inside);
      if (quietUntil == std::string_view::npos) return std::nullopt;
    }
  }
  return XmlScan{document, hasCdata};
}

}  // namespace platform
