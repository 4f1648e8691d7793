#include "keva/tagValue.h"

#include <utility>

namespace {

void cutAndReplaceLineEnds(std::string& text) {
  for (std::size_t i = text.find_first_of("\r\n"); i != std::string::npos;
       i = text.find_first_of("\r\n", i + 1)) {
    if (text[i] == '\n') {
      text[i] = '\r';
    } else if (i + 1 < text.size() && text[i + 1] == '\n') {
      text.resize(i + 1);
      return;
    }
  }
}

void trimBlanks(std::string& text) {
  if (text.size() < 2 || (text.front() != ' ' && text.back() != ' ')) return;
  text.erase(0, text.find_first_not_of(' '));
  if (text.size() < 2) return;
  text.resize(text.find_last_not_of(' ') + 1);
}

}  // namespace

std::string normalizedText(std::string_view text) {
  std::string normal(text.substr(0, text.find('\0')));
  cutAndReplaceLineEnds(normal);
  trimBlanks(normal);
  return normal;
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
  value_ = normalizedText(text);
}
