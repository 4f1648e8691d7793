#include "base/text.h"

#include <algorithm>

namespace {

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string mapped(std::string_view text, char (*convert)(char)) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), convert);
  return result;
}

}  // namespace

std::string& TrimChars(std::string& text, std::string_view set, unsigned mode) {
  if (mode & kTrimEnd) text.erase(text.find_last_not_of(set) + 1);
  if (mode & kTrimStart) text.erase(0, text.find_first_not_of(set));
  return text;
}

std::string FirstWord(std::string_view text) {
  std::string word(text.substr(0, text.find(' ')));
  return TrimChars(word, " \n\r", kTrimBoth);
}

std::size_t CountOccurrences(std::string_view text, std::string_view needle) {
  if (needle.empty()) return 0;
  std::size_t count = 0;
  for (std::size_t at = text.find(needle); at != std::string_view::npos;
       at = text.find(needle, at + needle.size())) {
    ++count;
  }
  return count;
}

std::string toUpper(std::string_view text) {
  return mapped(text, upper);
}

std::string toLower(std::string_view text) {
  return mapped(text, lower);
}

std::string dashedAddress(std::string_view address) {
  return mapped(address, [](char c) { return c == ':' ? '-' : upper(c); });
}
