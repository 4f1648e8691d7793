#include "machine/words.h"

#include <algorithm>
#include <string>

#include "base/text.h"

namespace machine {

namespace {

struct Word {
  std::string_view token;
  std::string_view word;
};

constexpr Word kWords[] = {
    {"coreaudio_device_type_aggregate",      "Aggregate"              },
    {"coreaudio_device_type_airplay",        "AirPlay"                },
    {"coreaudio_device_type_bluetooth",      "Bluetooth"              },
    {"coreaudio_device_type_bluetooth_le",   "Bluetooth LE"           },
    {"coreaudio_device_type_builtin",        "Built-in"               },
    {"coreaudio_device_type_displayport",    "DisplayPort"            },
    {"coreaudio_device_type_hdmi",           "HDMI"                   },
    {"coreaudio_device_type_thunderbolt",    "Thunderbolt"            },
    {"coreaudio_device_type_unknown",        ""                       },
    {"coreaudio_device_type_usb",            "USB"                    },
    {"coreaudio_device_type_virtual",        "Virtual"                },
    {"spcardreader",                         "Card Reader"            },
    {"sppci_vendor_Apple",                   "Apple"                  },
    {"sppci_vendor_amd",                     "AMD"                    },
    {"sppci_vendor_ati",                     "ATI"                    },
    {"sppci_vendor_intel",                   "Intel"                  },
    {"sppci_vendor_nvidia",                  "NVIDIA"                 },
    {"hub_device",                           "Hub"                    },
    {"spdisplays_airplay",                   "AirPlay"                },
    {"spdisplays_agp_device",                "AGP"                    },
    {"spdisplays_builtin",                   "Built-in"               },
    {"spdisplays_displayport",               "DisplayPort"            },
    {"spdisplays_displayport_dongletype_dp", "DisplayPort"            },
    {"spdisplays_dvi",                       "DVI"                    },
    {"spdisplays_hdmi",                      "HDMI"                   },
    {"spdisplays_internal",                  "Built-in"               },
    {"spdisplays_metal1",                    "Metal 1"                },
    {"spdisplays_metal2",                    "Metal 2"                },
    {"spdisplays_metal3",                    "Metal 3"                },
    {"spdisplays_metal4",                    "Metal 4"                },
    {"spdisplays_mtlgpufamilyapple7",        "Metal GPUFamily Apple 7"},
    {"spdisplays_not_supported",             "Not supported"          },
    {"spdisplays_pci_device",                "PCI"                    },
    {"spdisplays_pcie_device",               "PCIe"                   },
    {"spdisplays_sidecar",                   "Sidecar"                },
    {"spdisplays_supported",                 "Supported"              },
    {"spdisplays_thunderbolt",               "Thunderbolt"            },
    {"spdisplays_vga",                       "VGA"                    },
};

}  // namespace

std::string_view wordOf(std::string_view text) {
  for (const Word& word : kWords) {
    if (word.token == text) return word.word;
  }
  return text;
}

bool namesVirtual(std::string_view name) {
  constexpr std::string_view kSigns[] = {"virtual", "vmware", "parallels", "qemu"};
  const std::string lower = toLower(name);
  return std::ranges::any_of(
      kSigns, [&](std::string_view sign) { return lower.find(sign) != std::string::npos; });
}

}  // namespace machine
