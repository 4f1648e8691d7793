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

bool isEmptyTag(std::string_view tag) {
  const std::size_t end = tag.find('>');
  return end != std::string_view::npos && tag[end - 1] == '/';
}

// A text without comments and CDATA sections.
bool areReferencesKnown(std::string_view text) {
  constexpr std::size_t kLongestReference = 16;
  for (std::size_t at = 0; (at = text.find('&', at)) != std::string_view::npos; ++at) {
    const std::string_view rest = text.substr(at + 1, kLongestReference - 1);
    const std::size_t length = rest.find(';');
    if (length == std::string_view::npos || !isKnownReference(rest.substr(0, length))) return false;
  }
  return true;
}

// Whether all of it is UTF-8, without a NUL byte. Nearly all of a document is ASCII: blocks of it
// are looked at as a whole.
bool isPlainText(std::string_view text) {
  constexpr std::size_t kBlock = 64;  // bytes
  const auto isAscii = [](const char* block) {
    std::uint8_t bits = 0;  // the highest is set by a byte beyond ASCII, and by 0 - 1
    for (std::size_t i = 0; i < kBlock; ++i) {
      const auto byte = static_cast<std::uint8_t>(block[i]);
      bits = static_cast<std::uint8_t>(bits | byte | (byte - 1));
    }
    return bits < 0x80;
  };
  while (!text.empty()) {
    const bool ascii = text.size() >= kBlock && isAscii(text.data());
    const std::size_t length = ascii ? kBlock : utf8SequenceLength(text);
    if (length == 0 || text.front() == '\0') return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::optional<XmlScan> scanXml(std::string_view document) {
  constexpr std::string_view kComment = "<!--";
  constexpr std::string_view kCdata = "<![CDATA[";
  XmlScan xml{document.size()};
  std::size_t checked = 0;  // up to here references are known
  for (std::size_t at = 0; (at = document.find('<', at)) != std::string_view::npos; ++at) {
    const std::string_view rest = document.substr(at);
    const char second = rest.size() > 1 ? rest[1] : '\0';
    if (second == '/') {
      const std::size_t length = endTagLength(rest);
      if (length == 0) continue;
      xml.length = at + length;
      break;
    }
    if (second == 'd' && rest.starts_with("<data") && isEmptyTag(rest)) return std::nullopt;
    if (second != '!') continue;
    const bool comment = rest.starts_with(kComment);
    if (!comment && !rest.starts_with(kCdata)) continue;
    if (!areReferencesKnown(document.substr(checked, at - checked))) return std::nullopt;
    xml.hasCdata = xml.hasCdata || !comment;
    at = document.find(comment ? "-->" : "]]>", at + (comment ? kComment : kCdata).size());
    if (at == std::string_view::npos) return std::nullopt;
    checked = at;
  }
  const std::string_view text = document.substr(0, xml.length);
  if (!areReferencesKnown(text.substr(checked)) || !isPlainText(text)) return std::nullopt;
  return xml;
}

}  // namespace platform
