#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// UTF-8 as RFC 3629 has it: no overlong forms, no surrogates, nothing beyond U+10FFFF.

// Whether a byte stands in a sequence, but not at its start.
constexpr bool isUtf8Continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Sequences in a text of them, which are its characters.
std::size_t utf8Length(std::string_view text);

// Length in bytes of the sequence at the start of `text`, which must not be empty; 0 when the bytes
// there are none.
std::size_t utf8SequenceLength(std::string_view text);

// The text with U+FFFD in the place of every byte that belongs to no sequence: one for each byte.
std::string validUtf8(std::string_view text);
