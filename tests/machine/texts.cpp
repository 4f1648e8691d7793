#include <gtest/gtest.h>

#include "machine/cleanText.h"
#include "machine/marketing.h"
#include "machine/picture.h"
#include "machine/quantity.h"
#include "machine/usbIds.h"

namespace machine {

TEST(Texts, AreReadInAnyRegionOrNotAtAll) {
  using Bytes = std::optional<std::int64_t>;
  const struct {
    const char* text = nullptr;
    Bytes binary;
    Bytes decimal;
  } sizes[] = {
      {"16 GB",                   17179869184,         16000000000        },
      {"500,11 GB",               536989023601,        500110000000       },
      {"1.5\xC2\xA0mb",           1572864,             1500000            },
      {"256KB",                   262144,              256000             },
      {"2 TB",                    2199023255552,       2000000000000      },
      {"512 bytes",               512,                 512                },
      {"1 Byte",                  1,                   1                  },
      {"12 b",                    12,                  12                 },
      {"1.25\xE2\x80\xAFKB",      1280,                1250               },
      {"3  \xC2\xA0 mB",          3145728,             3000000            },
      {"9199999 TB",              {},                  9199999000000000000},
      {"9200000 TB",              {},                  {}                 },
      {"8000000 TB",              8796093022208000000, 8000000000000000000},
      {"1. GB",                   {},                  {}                 },
      {"1;5 GB",                  {},                  {}                 },
      {"7",                       {},                  {}                 },
      {"Zero KB",                 {},                  {}                 },
      {"1.000,5 GB",              {},                  {}                 },
      {"12 parsecs",              {},                  {}                 },
      {"-1 GB",                   {},                  {}                 },
      {"99999999999999999999 TB", {},                  {}                 },
      {"",                        {},                  {}                 },
  };
  for (const auto& [text, binary, decimal] : sizes) {
    EXPECT_EQ(binaryBytes(text), binary) << text;
    EXPECT_EQ(decimalBytes(text), decimal) << text;
  }
  EXPECT_EQ(megahertz("2,4 GHz"), 2400);
  EXPECT_EQ(megahertz("1067 MHz"), 1067);
  EXPECT_EQ(megahertz("1 GB"), std::nullopt);
  EXPECT_EQ(megahertz("2400"), std::nullopt);
  EXPECT_EQ(wholeNumber("-12"), -12);
  EXPECT_EQ(wholeNumber("12 "), std::nullopt);
  EXPECT_EQ(wholeNumber("9223372036854775808"), std::nullopt);
}

TEST(Texts, LoseWhatIsNoText) {
  const struct {
    const char* bytes;
    const char* clean;
  } cases[] = {
      {"caf\xC3\xA9 \xF0\x9F\x92\xBE", "caf\xC3\xA9 \xF0\x9F\x92\xBE"            },
      {"a\r\nb\rc\nd\te",              "a\nb\nc\nd e"                            },
      {"\x1B[2J\x7F\x1F ",             "\xEF\xBF\xBD[2J\xEF\xBF\xBD\xEF\xBF\xBD "},
      {"\xC2\x9B"
       "1m\xC2\xA0",            "\xEF\xBF\xBD"
       "1m\xC2\xA0"                                   },
      {"\xE9\xFF",                     "\xEF\xBF\xBD\xEF\xBF\xBD"                },
  };
  for (const auto& [bytes, clean] : cases) EXPECT_EQ(cleanText(bytes), clean) << bytes;
  EXPECT_EQ(textValue("  SSD 1  \r"), Value("SSD 1"));
  EXPECT_EQ(textValue(" \r"), Value());
}

TEST(Texts, NameSystemsThatAreKnown) {
  std::string names;
  for (int minor = 0; minor <= 17; ++minor) {
    names.append(marketingName("10." + std::to_string(minor) + ".4")).append(",");
  }
  for (int major = 11; major <= 27; ++major) {
    names.append(marketingName(std::to_string(major) + ".2.3")).append(",");
  }
  EXPECT_EQ(names,
            "Cheetah,Puma,Jaguar,Panther,Tiger,Leopard,Snow Leopard,Lion,Mountain Lion,Mavericks,"
            "Yosemite,El Capitan,Sierra,High Sierra,Mojave,Catalina,Big Sur,,"
            "Big Sur,Monterey,Ventura,Sonoma,Sequoia,,,,,,,,,,,Tahoe,,");
  EXPECT_EQ(marketingName("10.10"), "Yosemite");
  EXPECT_EQ(marketingName("26"), "Tahoe");
  for (const char* other : {"1", "10", ""}) EXPECT_EQ(marketingName(other), "") << other;
}

TEST(Texts, OfDisplaysAndUsbAreReadInAllTheirForms) {
  const struct {
    const char* text;
    std::int64_t width;  // 0 for nothing
    std::int64_t height;
    double rate;
  } pictures[] = {
      {"1512 x 982 @ 120.00Hz",      1512, 982,  120  },
      {"2880 x 1800 Retina",         2880, 1800, 0    },
      {"spdisplays_1440x900Retina",  1440, 900,  0    },
      {"1080 x 1920 @59,94 Hz",      1080, 1920, 59.94},
      {"spdisplays_1080p",           0,    0,    0    },
      {"1024 x",                     0,    0,    0    },
      {"9999999999999999999999 x 1", 0,    0,    0    },
      {"@",                          0,    0,    0    },
      {"10  x  20@  5",              10,   20,   5    },
      {"0 x 20 @ 0",                 0,    0,    0    },
      {"20 x 0",                     0,    0,    0    },
      {"20 X 1",                     0,    0,    0    },
  };
  for (const auto& [text, width, height, rate] : pictures) {
    const auto size = pictureSize(text);
    EXPECT_EQ(size ? size->width : 0, width) << text;
    EXPECT_EQ(size ? size->height : 0, height) << text;
    EXPECT_EQ(refreshRate(text).value_or(0), rate) << text;
  }
  const struct {
    const char* text;
    Value id;
  } ids[] = {
      {"0x043E (LG Electronics USA Inc.)", "043e"},
      {"apple_vendor_id",                  "05ac"},
      {"0x21",                             "0021"},
      {"0x123456",                         {}    },
      {"0x12zz",                           {}    },
      {"0x12345",                          {}    },
      {"0XaBcD",                           "abcd"},
      {"0x9f0A",                           "9f0a"},
      {"0x",                               {}    },
      {"1x12",                             {}    },
      {"LG",                               {}    },
  };
  for (const auto& [text, id] : ids) EXPECT_EQ(usbId(text), id) << text;
}

}  // namespace machine
