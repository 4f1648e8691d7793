#include <algorithm>

#include "machine/secretPlaces.h"

namespace machine {

namespace {

constexpr SecretPlace kPlaces[] = {
    {"",            "serial",        "devices",     Secret::Serial         },
    {"",            "serial-number", "machine",     Secret::Serial         },
    {"",            "inv-number",    "machine",     Secret::Serial         },
    {"",            "mac-address",   "adapters",    Secret::HardwareAddress},
    {"",            "manuf-by-mac",  "adapters",    Secret::HardwareAddress},
    {"",            "hostname",      "machine",     Secret::Host           },
    {"",            "int-name",      "machine",     Secret::Host           },
    {"",            "alias",         "machine",     Secret::Host           },
    {"",            "domain",        "machine",     Secret::Host           },
    {"",            "dns-domain",    "adapters",    Secret::Host           },
    {"",            "user-name",     "machine",     Secret::User           },
    {"",            "login",         "machine",     Secret::User           },
    {"usr-acc",     "",              "users",       Secret::User           },
    {"usr-acc",     "fullname",      "users",       Secret::User           },
    {"usr-acc",     "hdir",          "users",       Secret::User           },
    {"process",     "user",          "processes",   Secret::User           },
    {"process",     "cmd-line",      "processes",   Secret::Whole          },
    {"env-var",     "value",         "environment", Secret::Whole          },
    {"partition",   "",              "volumes",     Secret::FreeText       },
    {"partition",   "mount-point",   "volumes",     Secret::FreeText       },
    {"",            "disk",          "volumes",     Secret::FreeText       },
    {"net-adapter", "",              "adapters",    Secret::FreeText       },
    {"Printer",     "",              "printers",    Secret::FreeText       },
    {"Printer",     "uri",           "printers",    Secret::FreeText       },
    {"Printer",     "print-server",  "printers",    Secret::FreeText       },
    {"Scanner",     "",              "printers",    Secret::FreeText       },
};
static_assert(std::ranges::all_of(kPlaces, [](const SecretPlace& place) {
  return tableAt(place.table) < kTableCount;
}));

}  // namespace

const SecretPlace* findSnapshotSecret(std::string_view tag, std::string_view attribute) {
  const std::string_view section = tag.substr(0, tag.find(':'));
  const std::string_view key = attribute.substr(0, attribute.find(':'));
  const auto found = std::ranges::find_if(kPlaces, [&](const SecretPlace& place) {
    return place.key == key && (place.section.empty() || place.section == section);
  });
  return found == std::end(kPlaces) ? nullptr : &*found;
}

}  // namespace machine
