#include "postprocess/displays.h"

#include <gmock/gmock.h>

#include <tuple>

#include "base/formatString.h"
#include "shortForms.h"

namespace {

std::string written(std::string_view items) {
  return snapshotOf(PostProcessDisplays, rawDocument({"SPDisplaysDataType", items}));
}

// The attributes of a monitor's tag but for the first two, in one line.
std::string monitor(const std::string& facts) {
  std::string text = written("{_name=P; spdisplays_ndrvs=[{_name=M; " + facts + "}]}");
  text.erase(0, text.find("built-in=0") + 11);
  text.erase(std::min(text.find("+Modes"), text.find("-\n")));
  for (char& character : text) character = character == '\n' ? ' ' : character;
  return text;
}

// A base block of version 1.3 in hexadecimal, made by APP with the number 0x0123, that states an
// image size in centimetres and a descriptor, and else nothing.
std::string block(std::string size, std::string descriptor) {
  descriptor.resize(36, '0');
  return "00ffffffffffff000610230100000000000001038" + ("0" + size) + std::string(62, '0') +
         descriptor + std::string(112, '0');
}

// A detailed timing that has that size in pixels.
std::string timing(unsigned width, unsigned height) {
  return formatString("0119%02xa0%x0%02x1e%x0", width & 0xFF, width >> 8, height & 0xFF,
                      height >> 8);
}

}  // namespace

TEST(Displays, NameTheUsualShapesOfPictures) {
  const std::tuple<unsigned, unsigned, const char*> kCases[] = {
      {1366, 768,  "16:9"   },
      {2100, 900,  "21:9"   },
      {2560, 1080, "21:9"   },
      {1280, 854,  "3:2"    },
      {1152, 870,  "4:3"    },
      {1270, 1024, "5:4"    },
      {3024, 1964, "756:491"},
      {1080, 1920, "9:16"   },
  };
  for (const auto& [width, height, ratio] : kCases) {  // the image of 17 by 17 cm does not count
    EXPECT_THAT(monitor("_spdisplays_edid=" + block("1111", timing(width, height))),
                testing::HasSubstr(std::string("aspect-ratio=") + ratio + " "));
  }
  for (const auto& [size, ratio] : {
           std::pair("2a1b", "16:10"), {"2e28", "23:20"}
  }) {
    EXPECT_THAT(monitor("_spdisplays_edid=" + block(size, "")),
                testing::HasSubstr(std::string("aspect-ratio=") + ratio + " "));
  }
}

// The keys of the platform stand in for a block that is missing or cannot be read, not for facts
// that a block leaves out.
TEST(Displays, SayWhatThePlatformReadWithoutABlock) {
  const std::string facts =
      "_spdisplays_display-serial-number=fd626d63; _spdisplays_display-vendor-id=610; "
      "_spdisplays_display-product-id=5e; "
      "_spdisplays_display-week=49; _spdisplays_display-year=2010";
  const std::string written =
      "model=M serial=4251086179 manuf=APP product-id=005e manuf-date=2010-12-03 ";
  const std::string whole = block("0000", "");
  for (const std::string& bad :
       {std::string(), whole.substr(2), whole.substr(1), whole + "0", whole.substr(0, 254) + "0g",
        "0x" + whole.substr(0, 254), "0x0x" + whole, std::string("#12")}) {
    EXPECT_EQ(monitor(facts + "; _spdisplays_edid=" + bad), written) << bad;
  }
  for (const std::string& good : {whole, "0x" + whole, "0X" + whole + "ff"}) {
    EXPECT_THAT(monitor(facts + "; _spdisplays_edid=" + good), testing::StartsWith("model="))
        << good;
  }
  EXPECT_EQ(monitor("_spdisplays_display-serial-number=0x1010101; "
                    "_spdisplays_display-vendor-id=756e6b6e; "
                    "_spdisplays_display-product-id=76697274; _spdisplays_display-week=0; "
                    "_spdisplays_display-year=0"),
            "model=M ");
  EXPECT_EQ(monitor("_spdisplays_display-serial-number=1fd626d63; _spdisplays_display-year=2012; "
                    "_spdisplays_display-week=1a"),
            "model=M manuf-date=2012-01-01 ");
}

// Decimal texts and hexadecimal ones: a text of eight digits may be either.
TEST(Displays, HaveNoSerialNumberThatStandsInForAMissingOne) {
  const auto written = [](const std::string& text) {
    std::string descriptor = "000000ff00";
    for (const char character : text) descriptor += formatString("%02x", unsigned(character));
    return monitor("_spdisplays_edid=" + block("0000", descriptor + "0a"));
  };
  for (const std::string none :
       {"", " ", "0", "1", "0001", "0000000000000", "0x0", "0X00000001", "16843009", "01010101",
        "0x01010101", "0x1010101", "4294967295", "ffffffff", "FFFFffff", "0xFFFFFFFF", "4251086178",
        "fd626d62", "0xFD626D62"}) {
    EXPECT_THAT(written(none), testing::Not(testing::HasSubstr("serial="))) << none;
  }
  for (const std::string serial : {"1010101", "10", "10101010", "0x10101010", "FFFFFFF", "fd626d63",
                                   "99999999999", "0x", "-1"}) {
    EXPECT_THAT(written(serial), testing::HasSubstr("serial=" + serial + " "));
  }
}

TEST(Displays, PutVirtualOnesBehindTheOthers) {
  const std::string real = "{_name=P; spdisplays_ndrvs=[{_name=M}; {_name=N}]}";
  for (const char* key : {"spdisplays_virtualdevice=spdisplays_yes",
                          "spdisplays_connection_type=spdisplays_airplay"}) {
    EXPECT_THAT(
        written(std::string("{_name=P; spdisplays_ndrvs=[{_name=V; ") + key + "}]}; " + real),
        testing::ContainsRegex("Monitor:1=M\n(.*\n)*.*Monitor:2=N\n(.*\n)*"
                               ".*Monitor:3=V\nmain=0\nbuilt-in=0\nvirtual=1\n"));
  }
}

TEST(Displays, SayTheWordsOfTheProfilerInOurs) {
  const std::pair<const char*, const char*> kWords[] = {
      {"sppci_vendor_AMD",       "AMD"               },
      {"sppci_vendor_Apple",     "Apple"             },
      {"sppci_vendor_ATI",       "ATI"               },
      {"sppci_vendor_intel",     "Intel"             },
      {"sppci_vendor_Nvidia",    "NVIDIA"            },
      {"spdisplays_agp_device",  "AGP"               },
      {"spdisplays_builtin",     "Built-in"          },
      {"sppci_pci_device",       "PCI"               },
      {"spdisplays_pcie_device", "PCIe"              },
      {"spdisplays_tb_device",   "Thunderbolt"       },
      {"sppci_vendor_other",     "sppci_vendor_other"}
  };
  for (const auto& [token, word] : kWords) {
    for (const auto& [key, attribute] :
         {std::pair("spdisplays_vendor", "vendor"), std::pair("sppci_bus", "bus")}) {
      EXPECT_THAT(written(std::string("{_name=P; ") + key + "=" + token + "}"),
                  testing::HasSubstr(std::string("\n") + attribute + "=" + word + "\n"));
    }
  }
}
