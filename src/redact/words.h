#pragma once

#include <span>
#include <string_view>

// What is known of words and letters.

namespace redact {

// Words that say nothing about anybody: "macbook", "backup", "ethernet", "admin".
bool isOrdinaryWord(std::string_view word);

// Words of the names that the system itself gives to volumes, network services and devices.
bool isSystemsWord(std::string_view word);

// A small letter with an accent: composed, and the letter that the accent (U+0300 and on) follows.
struct Accent {
  std::string_view composed;
  std::string_view decomposed;
};
std::span<const Accent> accents();

// A small letter that is written otherwise where there is none: by its look ("o"), or by its sound
// ("oe"); "" as accents() has it.
struct Letter {
  std::string_view letter;
  std::string_view plain;
  std::string_view sound;
};
std::span<const Letter> letters();

}  // namespace redact
