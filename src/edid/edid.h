#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "edid/videoModes.h"

// What a monitor says about itself: the EDID block of VESA E-EDID 1.0 to 1.4 with extension blocks
// of CTA-861. Extensions of other kinds are passed over.
//
// The bytes are those of a monitor, or of an adapter between it and the machine, and may be
// anything. Check sums are not looked at: systems that blank out serial numbers leave them wrong.

struct Edid {
  struct Range {
    unsigned min = 0;  // 0 when not stated, as max
    unsigned max = 0;
  };

  std::string name;          // of the product; "" when not stated
  std::string serial;        // "" when not stated
  std::string manufacturer;  // three letters; "" when not stated
  unsigned product = 0;
  std::string date;  // as manufactureDate has it
  unsigned version = 0;
  unsigned revision = 0;
  bool digital = false;
  unsigned width = 0;          // of the image, in millimetres; 0 when not stated, as the height
  unsigned height = 0;         // both are whole centimetres when the block states those
  Range vertical;              // Hz
  Range horizontal;            // kHz
  unsigned maxPixelClock = 0;  // MHz; 0 when not stated

  // Without duplicates: the preferred mode, then established, standard and detailed ones.
  std::vector<VideoMode> modes;
  bool hasPreferred = false;  // whether the first mode is the preferred one
};

// Empty when the bytes do not begin with a whole base block.
std::optional<Edid> decodeEdid(std::span<const std::uint8_t> bytes);

// The same facts from single numbers, "" when the number states none.

// The three letters of a packed identifier, five bits each, as the big-endian number of its bytes.
std::string manufacturerName(std::uint32_t packed);

// In decimal. Numbers that stand in for a missing one (0, 1, 0x01010101, 0xFD626D62, all bits set)
// state none.
std::string serialNumber(std::uint32_t number);

// The first day of that week ("2017-12-31") when weeks of seven days are counted from 1 January on,
// or 1 January when there is no such week. EDID blocks count years from 1990 on; 1990 itself, older
// than EDID, without a week is a date that nobody filled in.
std::string manufactureDate(std::uint32_t week, std::uint32_t year);
