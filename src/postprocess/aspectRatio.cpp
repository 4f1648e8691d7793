#include "postprocess/aspectRatio.h"

#include <cmath>
#include <numeric>

#include "base/formatString.h"

std::string aspectRatio(unsigned width, unsigned height, double tolerance) {
  struct Ratio {
    const char* name;
    double width;
    double height;
  };
  constexpr Ratio kUsual[] = {
      {"16:9",  16, 9 },
      {"16:10", 16, 10},
      {"4:3",   4,  3 },
      {"5:4",   5,  4 },
      {"21:9",  21, 9 },
      {"21:9",  64, 27}, // what is sold under that name
      {"3:2",   3,  2 },
  };
  for (const Ratio& ratio : kUsual) {
    if (std::abs(width * ratio.height / (height * ratio.width) - 1) <= tolerance) return ratio.name;
  }
  const unsigned common = std::gcd(width, height);
  return formatString("%u:%u", width / common, height / common);
}
