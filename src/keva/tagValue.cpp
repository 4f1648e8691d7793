#include "keva/tagValue.h"

#include <algorithm>
#include <utility>

namespace {

void cutAndReplaceLineEnds(std::string& text) {
  std::size_t replaced = std::string::npos;  // where the last line feed was replaced
  for (std::size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 1)) {
    if (i > 0 && i - 1 != replaced && text[i - 1] == '\r') return text.resize(i);
    text[i] = '\r';
    replaced = i;
  }
}

void trimBlanks(SharedText& text) {
  if (text.size() < 2 || (text.front() != ' ' && text.back() != ' ')) return;
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.size() < 2) return;
  text.remove_suffix(text.size() - (text.find_last_not_of(' ') + 1));
}

}  // namespace

SharedText normalizedText(SharedText text) {
  text.remove_suffix(text.size() - std::min(text.size(), text.find('\0')));
  if (text.find('\n') != SharedText::npos) {
    std::string changed = text;
    cutAndReplaceLineEnds(changed);
    text = SharedText(std::move(changed));
  }
  trimBlanks(text);
  return text;
}

SharedText normalizedText(std::string text) {
  return normalizedText(SharedText(std::move(text)));
}

TagValue::TagValue(const char* text) {
  setText(text == nullptr ? "" : text);
}

TagValue& TagValue::operator=(const TagValue& other) {
  if (other.kind() != Kind::None) value_ = other.value_;
  return *this;
}

TagValue& TagValue::operator=(TagValue&& other) noexcept {
  if (this != &other && other.kind() != Kind::None) value_ = std::move(other.value_);
  return *this;
}

void TagValue::setText(std::string_view text) {
  value_ = normalizedText(SharedText(text));
}
