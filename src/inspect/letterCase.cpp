#include "inspect/letterCase.h"

#include <cstddef>

#include "base/text.h"

namespace inspect {

namespace {

// Capital letters in the two-byte range of UTF-8, and how far their small ones are (Unicode, blocks
// Latin-1 Supplement to Cyrillic). With a distance of 1 only every second letter is a capital.
struct Capitals {
  unsigned first;
  unsigned last;
  unsigned distance;
};

constexpr Capitals kCapitals[] = {
    {0xC0,  0xD6,  32},
    {0xD8,  0xDE,  32},
    {0x100, 0x12F, 1 },
    {0x132, 0x137, 1 },
    {0x14A, 0x177, 1 },
    {0x391, 0x3A1, 32},
    {0x3A3, 0x3AB, 32},
    {0x400, 0x40F, 80},
    {0x410, 0x42F, 32},
};

unsigned small(unsigned letter) {
  // Pairs that begin at an odd number: 0x139 to 0x148, 0x179 to 0x17E.
  if ((letter >= 0x139 && letter <= 0x148) || (letter >= 0x179 && letter <= 0x17E)) {
    return letter % 2 == 1 ? letter + 1 : letter;
  }
  for (const Capitals& range : kCapitals) {
    if (letter < range.first || letter > range.last) continue;
    return range.distance > 1 || letter % 2 == 0 ? letter + range.distance : letter;
  }
  return letter;
}

}  // namespace

std::string foldCase(std::string_view text) {
  std::string folded = toLower(text);
  for (std::size_t i = 0; i + 1 < folded.size(); ++i) {
    const auto lead = static_cast<unsigned char>(folded[i]);
    const auto next = static_cast<unsigned char>(folded[i + 1]);
    if (lead < 0xC3 || lead > 0xD0 || (next & 0xC0) != 0x80) continue;
    const unsigned letter = small((lead & 0x1FU) << 6 | (next & 0x3FU));
    folded[i] = static_cast<char>(0xC0 | letter >> 6);
    folded[i + 1] = static_cast<char>(0x80 | (letter & 0x3F));
    ++i;
  }
  return folded;
}

}  // namespace inspect
