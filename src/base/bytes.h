#pragma once

#include <bit>
#include <cstdint>
#include <string>

// Fixed-width integers in a byte stream.

// Appends `number` in the machine's byte order when `native`, else most significant byte first.
template <typename Unsigned>
void appendInteger(std::string& out, Unsigned number, bool native) {
  constexpr int kBits = 8 * static_cast<int>(sizeof(Unsigned));
  const bool littleEndian = native && std::endian::native == std::endian::little;
  for (int i = 0; i < kBits; i += 8) {
    const int shift = littleEndian ? i : kBits - 8 - i;
    out.push_back(static_cast<char>((number >> shift) & 0xFF));
  }
}
