#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/header.h"
#include "huxread/layout.h"

// What can still be read of a file that was cut off or damaged.

namespace huxread {

struct SalvagedSection {
  std::uint32_t number = 0;  // as the header lists it; without one, as they were found
  SectionType type = SectionType::Unknown;  // as the header says; without one, what it looks like
  std::size_t offset = 0;                   // bytes from the start of the file
  std::size_t used = 0;                     // bytes of its stream that could be read
  std::optional<std::size_t> length;        // stored bytes in all; nothing when no header tells
  std::string text;       // up to there; from damaged bytes on, the last of it may be wrong
  bool complete = false;  // the text is, by its checksum
  std::string problem;    // what ended it, or is wrong behind it; "" when nothing is
};

// "section 0 can be read whole", "section 0 can be read to 43 %", and where the length is not known
// "section 0 can be read to line 812".
std::string extentOf(const SalvagedSection& section);

struct Salvaged {
  enum class Damage {
    None,     // a whole snapshot file
    Damaged,  // all of the file may be there, but some of it is wrong
    Cut,      // the file ends before its end
    Foreign,  // never was a snapshot file, or nothing of it is left
  };

  Damage damage = Damage::Foreign;
  std::string
      what;  // in one line: "cut after byte 5120; section 0 can be read to line 812"; "" for None
  std::vector<SalvagedSection> sections;
};

// Reads sections where the header says they are. Without a readable header, and where one is not at
// its place, reads one behind the other from the start of the file on, and behind a damaged one
// from the next place where one begins. All texts together have at most so many bytes, twice that
// while it reads; sections without a header are at most 1,000.
Salvaged salvage(std::string_view file, std::size_t limit = kMaxTextSize);

}  // namespace huxread
