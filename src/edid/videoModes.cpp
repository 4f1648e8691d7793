#include "edid/videoModes.h"

#include <array>
#include <cmath>

namespace {

// --- VESA E-EDID, tables of the established timings; rates to a hundredth of a hertz

constexpr VideoMode kEstablished[] = {
    {720,  400,  70.08, false},
    {720,  400,  87.85, false},
    {640,  480,  59.94, false},
    {640,  480,  66.67, false},
    {640,  480,  72.81, false},
    {640,  480,  75.00, false},
    {800,  600,  56.25, false},
    {800,  600,  60.32, false},
    {800,  600,  72.19, false},
    {800,  600,  75.00, false},
    {832,  624,  74.55, false},
    {1024, 768,  86.96, true },
    {1024, 768,  60.00, false},
    {1024, 768,  70.07, false},
    {1024, 768,  75.03, false},
    {1280, 1024, 75.02, false},
    {1152, 870,  75.06, false},
};

// With reduced blanking are 8, 17, 21, 25 and 38.
constexpr VideoMode kFurtherEstablished[] = {
    {640,  350,  85.08},
    {640,  400,  85.08},
    {720,  400,  85.04},
    {640,  480,  85.01},
    {848,  480,  60.00},
    {800,  600,  85.06},
    {1024, 768,  85.00},
    {1152, 864,  75.00},
    {1280, 768,  59.99},
    {1280, 768,  59.87},
    {1280, 768,  74.89},
    {1280, 768,  84.84},
    {1280, 960,  60.00},
    {1280, 960,  85.00},
    {1280, 1024, 60.02},
    {1280, 1024, 85.02},
    {1360, 768,  60.02},
    {1440, 900,  59.90},
    {1440, 900,  59.89},
    {1440, 900,  74.98},
    {1440, 900,  84.84},
    {1400, 1050, 59.95},
    {1400, 1050, 59.98},
    {1400, 1050, 74.87},
    {1400, 1050, 84.96},
    {1680, 1050, 59.88},
    {1680, 1050, 59.95},
    {1680, 1050, 74.89},
    {1680, 1050, 84.94},
    {1600, 1200, 60.00},
    {1600, 1200, 65.00},
    {1600, 1200, 70.00},
    {1600, 1200, 75.00},
    {1600, 1200, 85.00},
    {1792, 1344, 60.00},
    {1792, 1344, 75.00},
    {1856, 1392, 60.00},
    {1856, 1392, 75.00},
    {1920, 1200, 59.95},
    {1920, 1200, 59.88},
    {1920, 1200, 74.93},
    {1920, 1200, 84.93},
    {1920, 1440, 60.00},
    {1920, 1440, 75.00},
};

// --- VESA DMT: modes with a code for standard timings whose rates are not whole

// The code that DMT has for 1024x768 at 70 Hz says 72.
struct StandardMode {
  unsigned width;
  unsigned height;
  unsigned rate;  // as the code states it
  double exact;
};

constexpr StandardMode kStandard[] = {
    {640,  400,  85, 85.08},
    {640,  480,  60, 59.94},
    {640,  480,  72, 72.81},
    {640,  480,  85, 85.01},
    {800,  600,  60, 60.32},
    {800,  600,  72, 72.19},
    {800,  600,  85, 85.06},
    {1024, 768,  72, 70.07},
    {1024, 768,  75, 75.03},
    {1280, 800,  60, 59.81},
    {1280, 800,  75, 74.93},
    {1280, 800,  85, 84.88},
    {1280, 1024, 60, 60.02},
    {1280, 1024, 75, 75.02},
    {1280, 1024, 85, 85.02},
    {1400, 1050, 60, 59.98},
    {1400, 1050, 75, 74.87},
    {1400, 1050, 85, 84.96},
    {1440, 900,  60, 59.89},
    {1440, 900,  75, 74.98},
    {1440, 900,  85, 84.84},
    {1680, 1050, 60, 59.95},
    {1680, 1050, 75, 74.89},
    {1680, 1050, 85, 84.94},
    {1920, 1200, 60, 59.88},
    {1920, 1200, 75, 74.93},
    {1920, 1200, 85, 84.93},
};

// --- CTA-861, video timings

constexpr double kNtsc = 60 / 1.001;
constexpr double kShort = 60.054;  // 262 lines of a field of 262.5
constexpr double kShortPal = 50.080;

// Modes of one size whose numbers follow each other. Where a rate stands twice, the second number
// is the same mode with another shape of picture.
struct CtaModes {
  unsigned first;  // the first one's number
  unsigned width;
  unsigned height;
  bool interlaced;
  std::array<double, 8> rates;  // 0 behind the last one
};

constexpr CtaModes kCta[] = {
    {1,   640,   480,  false, {kNtsc}                           },
    {2,   720,   480,  false, {kNtsc, kNtsc}                    },
    {4,   1280,  720,  false, {60}                              },
    {5,   1920,  1080, true,  {60}                              },
    {6,   1440,  480,  true,  {kNtsc, kNtsc}                    },
    {8,   1440,  240,  false, {kShort, kShort}                  },
    {10,  2880,  480,  true,  {kNtsc, kNtsc}                    },
    {12,  2880,  240,  false, {kShort, kShort}                  },
    {14,  1440,  480,  false, {kNtsc, kNtsc}                    },
    {16,  1920,  1080, false, {60}                              },
    {17,  720,   576,  false, {50, 50}                          },
    {19,  1280,  720,  false, {50}                              },
    {20,  1920,  1080, true,  {50}                              },
    {21,  1440,  576,  true,  {50, 50}                          },
    {23,  1440,  288,  false, {kShortPal, kShortPal}            },
    {25,  2880,  576,  true,  {50, 50}                          },
    {27,  2880,  288,  false, {kShortPal, kShortPal}            },
    {29,  1440,  576,  false, {50, 50}                          },
    {31,  1920,  1080, false, {50, 24, 25, 30}                  },
    {35,  2880,  480,  false, {kNtsc, kNtsc}                    },
    {37,  2880,  576,  false, {50, 50}                          },
    {39,  1920,  1080, true,  {50, 100}                         },
    {41,  1280,  720,  false, {100}                             },
    {42,  720,   576,  false, {100, 100}                        },
    {44,  1440,  576,  true,  {100, 100}                        },
    {46,  1920,  1080, true,  {120}                             },
    {47,  1280,  720,  false, {120}                             },
    {48,  720,   480,  false, {2 * kNtsc, 2 * kNtsc}            },
    {50,  1440,  480,  true,  {2 * kNtsc, 2 * kNtsc}            },
    {52,  720,   576,  false, {200, 200}                        },
    {54,  1440,  576,  true,  {200, 200}                        },
    {56,  720,   480,  false, {4 * kNtsc, 4 * kNtsc}            },
    {58,  1440,  480,  true,  {4 * kNtsc, 4 * kNtsc}            },
    {60,  1280,  720,  false, {24, 25, 30}                      },
    {63,  1920,  1080, false, {120, 100}                        },
    {65,  1280,  720,  false, {24, 25, 30, 50, 60, 100, 120}    },
    {72,  1920,  1080, false, {24, 25, 30, 50, 60, 100, 120}    },
    {79,  1680,  720,  false, {24, 25, 30, 50, 60, 100, 120}    },
    {86,  2560,  1080, false, {24, 25, 30, 50, 60, 100, 120}    },
    {93,  3840,  2160, false, {24, 25, 30, 50, 60}              },
    {98,  4096,  2160, false, {24, 25, 30, 50, 60}              },
    {103, 3840,  2160, false, {24, 25, 30, 50, 60}              },
    {108, 1280,  720,  false, {48, 48}                          },
    {110, 1680,  720,  false, {48}                              },
    {111, 1920,  1080, false, {48, 48}                          },
    {113, 2560,  1080, false, {48}                              },
    {114, 3840,  2160, false, {48}                              },
    {115, 4096,  2160, false, {48}                              },
    {116, 3840,  2160, false, {48, 100, 120, 100, 120}          },
    {121, 5120,  2160, false, {24, 25, 30, 48, 50, 60, 100}     },
    {193, 5120,  2160, false, {120}                             },
    {194, 7680,  4320, false, {24, 25, 30, 48, 50, 60, 100, 120}},
    {202, 7680,  4320, false, {24, 25, 30, 48, 50, 60, 100, 120}},
    {210, 10240, 4320, false, {24, 25, 30, 48, 50, 60, 100, 120}},
    {218, 4096,  2160, false, {100, 120}                        },
};

}  // namespace

std::int64_t hundredths(const VideoMode& mode) {
  return std::llround(mode.rate * 100);
}

bool isSame(const VideoMode& left, const VideoMode& right) {
  return left.width == right.width && left.height == right.height &&
         left.interlaced == right.interlaced && hundredths(left) == hundredths(right);
}

std::span<const VideoMode> establishedModes() {
  return kEstablished;
}

std::span<const VideoMode> furtherEstablishedModes() {
  return kFurtherEstablished;
}

VideoMode standardMode(unsigned width, unsigned height, unsigned rate) {
  for (const StandardMode& mode : kStandard) {
    if (mode.width == width && mode.height == height && mode.rate == rate) {
      return {width, height, mode.exact};
    }
  }
  return {width, height, static_cast<double>(rate)};
}

std::optional<VideoMode> ctaMode(unsigned number) {
  for (const CtaModes& modes : kCta) {
    if (number < modes.first || number >= modes.first + modes.rates.size()) continue;
    const double rate = modes.rates[number - modes.first];
    if (rate != 0) return VideoMode{modes.width, modes.height, rate, modes.interlaced};
  }
  return std::nullopt;
}
