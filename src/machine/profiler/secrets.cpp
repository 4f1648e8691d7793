#include <algorithm>

#include "base/text.h"
#include "machine/secretPlaces.h"

namespace machine {

namespace {

constexpr SecretPlace kPlaces[] = {
    {"",                          "local_host_name",                  "machine",  Secret::Host,            ""                                               },
    {"",                          "user_name",                        "machine",  Secret::User,            ""                                               },
    {"",                          "boot_volume",                      "volumes",  Secret::FreeText,        ""                                               },
    {"",                          "provisioning_UDID",                "machine",  Secret::Serial,          ""                                               },
    {"",                          "switch_uid_key",                   "devices",  Secret::Serial,          ""                                               },
    {"",                          "sp_fw_guid",                       "devices",  Secret::Serial,          ""                                               },
    {"",                          "spcamera_unique-id",               "devices",  Secret::Serial,          ""                                               },
    {"",                          "spsas_sasaddress",                 "devices",  Secret::Serial,          ""                                               },
    {"",                          "spfibrechannel_portworldwidename", "devices",  Secret::Serial,          ""                                               },
    {"",                          "spfibrechannel_nodeworldwidename", "devices",  Secret::Serial,          ""                                               },
    {"",                          "MAC Address",                      "adapters", Secret::HardwareAddress, ""                                               },
    {"",                          "hardware_address",                 "adapters", Secret::HardwareAddress, ""                                               },
    {"",                          "NetBIOSName",                      "machine",  Secret::Host,            ""                                               },
    {"",                          "Workgroup",                        "machine",  Secret::Host,            ""                                               },
    {"",                          "DomainName",                       "adapters", Secret::Host,            ""                                               },
    {"",                          "SearchDomains",                    "adapters", Secret::Host,            ""                                               },
    {"",                          "dhcp_domain_name",                 "adapters", Secret::Host,            ""                                               },
    {"",                          "CommRemoteAddress",                "adapters", Secret::Host,            ""                                               },
    {"",                          "AuthName",                         "machine",  Secret::User,            ""                                               },
    {"",                          "_name",                            "adapters", Secret::FreeText,        "spairport_current_network_information"          },
    {"",                          "_name",                            "adapters", Secret::FreeText,        "spairport_airport_other_local_wireless_networks"},
    {"SPNetworkDataType",         "_name",                            "adapters", Secret::FreeText,        ""                                               },
    {"SPNetworkLocationDataType", "_name",                            "adapters", Secret::FreeText,        ""                                               },
    {"SPStorageDataType",         "_name",                            "volumes",  Secret::FreeText,        "_items"                                         },
    {"",                          "_name",                            "volumes",  Secret::FreeText,        "volumes"                                        },
    {"",                          "mount_point",                      "volumes",  Secret::FreeText,        ""                                               },
    {"",                          "com.apple.corestorage.lvg.name",   "volumes",  Secret::FreeText,        ""                                               },
    {"SPNetworkVolumeDataType",   "_name",                            "volumes",  Secret::FreeText,        "_items"                                         },
    {"",                          "spnetworkvolume_mntfromname",      "volumes",  Secret::FreeText,        ""                                               },
    {"",                          "spnetworkvolume_fsmtnonname",      "volumes",  Secret::FreeText,        ""                                               },
    {"SPPrintersDataType",        "_name",                            "printers", Secret::FreeText,        "_items"                                         },
    {"SPPrintersDataType",        "uri",                              "printers", Secret::FreeText,        ""                                               },
    {"SPPrintersDataType",        "printserver",                      "printers", Secret::FreeText,        ""                                               },
    {"SPBluetoothDataType",       "general_name",                     "devices",  Secret::FreeText,        ""                                               },
    {"SPBluetoothDataType",       "controller_chipset",               "devices",  Secret::FreeText,        ""                                               },
    {"SPBluetoothDataType",       "general_chipset",                  "devices",  Secret::FreeText,        ""                                               },
    {"SPAudioDataType",           "_name",                            "devices",  Secret::FreeText,        "_items"                                         },
    {"SPCameraDataType",          "_name",                            "devices",  Secret::FreeText,        "_items"                                         },
    {"SPThunderboltDataType",     "device_name_key",                  "devices",  Secret::FreeText,        ""                                               },
};
static_assert(std::ranges::all_of(kPlaces, [](const SecretPlace& place) {
  return tableAt(place.table) < kTableCount;
}));

// Serial numbers stand under dozens of keys, which all say so.
constexpr SecretPlace kSerial = {"", "", "devices", Secret::Serial};

bool fits(std::string_view rule, std::string_view text) {
  return rule.empty() || rule == text;
}

bool contains(std::string_view key, std::string_view part) {
  return toLower(key).find(part) != std::string::npos;
}

}  // namespace

const SecretPlace* findProfiledSecret(std::string_view section, std::string_view parent,
                                      std::string_view key) {
  const auto found = std::ranges::find_if(kPlaces, [&](const SecretPlace& place) {
    return place.key == key && fits(place.section, section) && fits(place.parent, parent);
  });
  if (found != std::end(kPlaces)) return &*found;
  return contains(key, "serial") && !contains(key, "serialata") ? &kSerial : nullptr;
}

bool isProfiledName(std::string_view section, std::string_view key) {
  return section == "SPBluetoothDataType" && key.find('_') == std::string_view::npos;
}

bool statesVersions(std::string_view key) {
  constexpr std::string_view kWords[] = {"version", "info",    "rev",     "firmware", "driver",
                                         "bcd",     "build",   "descr",   "path",     "signed",
                                         "soft",    "library", "location"};
  return std::ranges::any_of(kWords, [key](std::string_view word) { return contains(key, word); });
}

bool isDisplayNumber(std::string_view key) {
  return key.starts_with("_spdisplays_display-serial-number");
}

bool isDisplayBlock(std::string_view key) {
  return key == "_spdisplays_edid";
}

}  // namespace machine
