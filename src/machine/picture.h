#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// What a display shows, as the profiler writes it: "3024 x 1964", "1512 x 982 @ 120.00Hz",
// "2880 x 1800 Retina", "spdisplays_1440x900Retina".

namespace machine {

struct PictureSize {  // in pixels
  std::int64_t width;
  std::int64_t height;
};

// The first two numbers with an "x" between them; nothing when there are none.
std::optional<PictureSize> pictureSize(std::string_view text);

// Hertz, behind the "@"; nothing when there is none, or 0.
std::optional<double> refreshRate(std::string_view text);

}  // namespace machine
