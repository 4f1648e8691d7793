#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

inline bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Whether the text is like the other one, in which every "0" stands for any digit.
bool hasShape(std::string_view text, std::string_view shape);

// Texts that are digits from end to end, as the profiler prints identifiers and blocks of bytes. A
// hexadecimal text may have the prefix "0x", and digits of either case.

// Empty when the text is no number, or one beyond 32 bits.
std::optional<std::uint32_t> decimalNumber(std::string_view text);
std::optional<std::uint32_t> hexadecimalNumber(std::string_view text);

// Two digits for each byte; no bytes at all when the text is anything else.
std::vector<std::uint8_t> hexadecimalBytes(std::string_view text);
