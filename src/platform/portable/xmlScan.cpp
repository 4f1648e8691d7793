#include "platform/portable/xmlScan.h"

#include <algorithm>
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
  const std::size_t end = tag.find_first_of("<>", 1);
  return end != std::string_view::npos && tag.substr(end - 1, 2) == "/>";
}

// `text` begins with "&".
bool isKnownReferenceAhead(std::string_view text) {
  constexpr std::size_t kLongest = 16;  // bytes
  const std::string_view name = text.substr(1, kLongest - 1);
  const std::size_t length = name.find(';');
  return length != std::string_view::npos && isKnownReference(name.substr(0, length));
}

// A character that never has to be looked at closer.
bool isPlain(char c) {
  return static_cast<signed char>(c) > 0 && c != '<' && c != '&';
}

// The length of the character at the start of `text`; 0 when it is none, or NUL.
std::size_t characterLength(std::string_view text) {
  return text.front() == '\0' ? 0 : utf8SequenceLength(text);
}

bool isPlainText(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

constexpr std::size_t kBlock = 32;     // bytes
constexpr std::size_t kLookAhead = 4;  // bytes behind it

// Whether nothing begins in a block that has to be looked at closer, as it is with nearly all of a
// document: nothing but ASCII, without NUL, "&", "<!", "</p" and "<data". The same for each byte,
// and no way out, so that compilers make it a few steps for the whole.
bool isDull(const char* block) {
  std::uint8_t found = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const char* const c = block + i;
    const bool tag = (c[0] == '<') & ((c[1] == '!') | ((c[1] == '/') & (c[2] == 'p')) |
                                      ((c[1] == 'd') & (c[4] == 'a')));
    found |= static_cast<std::uint8_t>(tag | (c[0] == '&') | (static_cast<signed char>(c[0]) <= 0));
  }
  return found == 0;
}

// Goes through a document character by character, or block by block where it can.
class Scanner {
 public:
  explicit Scanner(std::string_view document) : document_(document) {}

  std::optional<XmlScan> scan() {
    while (at_ < document_.size() && !ended_) {
      if (document_.size() - at_ >= kBlock + kLookAhead && isDull(document_.data() + at_)) {
        at_ += kBlock;
        continue;
      }
      const std::size_t end = std::min(at_ + kBlock, document_.size());
      while (at_ < end && !ended_) {
        if (isPlain(document_[at_])) {
          ++at_;
        } else if (!step()) {
          return std::nullopt;
        }
      }
    }
    xml_.length = at_;
    return xml_;
  }

 private:
  // Whether what stands there is allowed.
  bool step() {
    const std::string_view rest = document_.substr(at_);
    if (rest.starts_with('<')) {
      constexpr std::string_view kComment = "<!--";
      constexpr std::string_view kCdata = "<![CDATA[";
      if (rest.starts_with(kComment)) return skip(kComment, "-->");
      if (rest.starts_with(kCdata)) {
        xml_.hasCdata = true;
        return skip(kCdata, "]]>");
      }
      if (rest.starts_with("<data") && isEmptyTag(rest)) return false;
      const std::size_t last = endTagLength(rest);
      ended_ = last > 0;
      at_ += ended_ ? last : 1;
      return true;
    }
    if (rest.starts_with('&') && !isKnownReferenceAhead(rest)) return false;
    const std::size_t length = characterLength(rest);
    at_ += length;
    return length > 0;
  }

  // A part of the document in which nothing but its end means anything.
  bool skip(std::string_view opening, std::string_view closing) {
    const std::size_t begin = at_ + opening.size();
    at_ = document_.find(closing, begin);
    return at_ != std::string_view::npos && isPlainText(document_.substr(begin, at_ - begin));
  }

  std::string_view document_;
  std::size_t at_ = 0;
  bool ended_ = false;  // behind "</plist>"
  XmlScan xml_;
};

}  // namespace

std::optional<XmlScan> scanXml(std::string_view document) {
  return Scanner(document).scan();
}

}  // namespace platform
