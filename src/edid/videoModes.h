#pragma once

#include <cstdint>
#include <optional>
#include <span>

// Video modes, and the published lists that EDID blocks refer to by a bit or a number.

struct VideoMode {
  unsigned width = 0;   // pixels
  unsigned height = 0;  // lines of a whole frame
  double rate = 0;      // Hz; of an interlaced mode the rate of its fields
  bool interlaced = false;
};

// The rate in hundredths of a hertz.
std::int64_t hundredths(const VideoMode& mode);

// Whether the two are one mode: the same size, and the same rate to a hundredth of a hertz.
bool isSame(const VideoMode& left, const VideoMode& right);

// The established timings I and II: one for each bit from the highest one of byte 35 of an EDID
// block on.
std::span<const VideoMode> establishedModes();

// The established timings III: one for each bit from the highest one of the list's first byte on.
std::span<const VideoMode> furtherEstablishedModes();

// The mode that a standard timing of that size and that rounded rate means: VESA's own with its
// exact rate, or just that rate where VESA has none.
VideoMode standardMode(unsigned width, unsigned height, unsigned rate);

// The mode of that number in CTA-861 (its "VIC"); empty for numbers that are not given out. Where a
// number stands for a rate and its NTSC twin (60 and 59.94), this is the whole one.
std::optional<VideoMode> ctaMode(unsigned number);
