#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Figures as the profiler prints them for people, in any region: "500,11 GB", "2.4 GHz", "667 MHz".

namespace machine {

// Bytes of a size text: a number with "." or "," as its point, blanks or none, and a unit from
// bytes to TB, in any case. Binary units (1 KB is 2^10 bytes), as the profiler means them for
// memory and caches; nothing for any other text, and beyond 64 bits.
std::optional<std::int64_t> binaryBytes(std::string_view text);

// The same in decimal units (1 GB is 10^9 bytes), as it means them for disks.
std::optional<std::int64_t> decimalBytes(std::string_view text);

// Megahertz of a speed: "2.4 GHz" and "2,4 GHz" are 2400, "1067 MHz" is 1067.
std::optional<std::int64_t> megahertz(std::string_view text);

// The number that the text begins with, its point "." or ","; nothing when it begins with none.
// Never negative.
std::optional<double> leadingNumber(std::string_view text);

// The whole number, maybe with a "-", that the text is from its first byte to its last; nothing for
// any other text, and beyond 64 bits.
std::optional<std::int64_t> wholeNumber(std::string_view text);

}  // namespace machine
