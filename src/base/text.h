#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Small helpers on texts, bytewise: letters are those of ASCII, whatever the locale.

enum TrimMode : unsigned { kTrimStart = 1, kTrimEnd = 2, kTrimBoth = 3 };

// Removes bytes of `set` from the ends that `mode` names, in place; returns `text`.
std::string& TrimChars(std::string& text, std::string_view set, unsigned mode);

// The text before the first blank (all of it without one), with blanks and line ends trimmed off.
// A text that begins with a blank has an empty first word.
std::string FirstWord(std::string_view text);

// How often `needle` occurs, each occurrence searched behind the one before. An empty needle
// occurs nowhere.
std::size_t CountOccurrences(std::string_view text, std::string_view needle);

// Whether any character satisfies the predicate. It always walks the whole text, without an early
// return, so that compilers take many characters at a time (conditions in it are best joined by
// "|"): for texts in which mostly none does.
template <typename Predicate>
bool holdsAny(std::string_view text, const Predicate& predicate) {
  std::uint8_t found = 0;
  for (const char c : text) found |= static_cast<std::uint8_t>(predicate(c));
  return found != 0;
}

std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);

// A hardware address in the inventory's notation: "00:1b:63:aa:bb:cc" gives "00-1B-63-AA-BB-CC".
std::string dashedAddress(std::string_view address);
