#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "base/text.h"
#include "machine/cleanText.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kTable = tableAt("adapters");

// The texts of an array for which `belongs`, with ", " between them.
template <typename Belongs>
Value joinedIf(const PropertyList& value, Belongs belongs) {
  if (value.array() == nullptr) return {};
  PropertyList::Array chosen;
  for (const PropertyList& element : *value.array()) {
    if (element.text() != nullptr && belongs(*element.text())) chosen.push_back(element);
  }
  return joined(PropertyList(std::move(chosen)));
}

bool isIPv6(std::string_view address) {
  return address.find(':') != std::string_view::npos;
}

// Some systems list the addresses of both kinds together.
Value ipv4(const PropertyList& value) {
  return joinedIf(value, [](std::string_view address) { return !isIPv6(address); });
}

Value ipv6(const PropertyList& value) {
  return joinedIf(value, isIPv6);
}

// Newer systems keep the name from programs that may not know where the Mac is.
Value networkName(const PropertyList& value) {
  const Value name = text(value);
  return textOf(name) == "<redacted>" ? Value() : name;
}

// What stands below the service itself is written last: it is the one that says more, but for the
// masks, which beside the addresses are those of all of them.
constexpr Line kIPv4Lines[] = {
    {"subnet_masks", {"SubnetMasks"},  joined},
    {"gateway",      {"Router"},       text  },
    {"method",       {"ConfigMethod"}, text  },
};
constexpr auto kIPv4 = cells("adapters", kIPv4Lines);
constexpr Line kServiceLines[] = {
    {"interface",      {"interface"},   text  },
    {"name",           {"_name"},       text  },
    {"type",           {"type"},        text  },
    {"ip_addresses",   {"ip_address"},  ipv4  },
    {"subnet_masks",   {"SubnetMasks"}, joined},
    {"ipv6_addresses", {"ip_address"},  ipv6  },
};
constexpr auto kService = cells("adapters", kServiceLines);
constexpr Line kIPv6Lines[] = {
    {"ipv6_addresses", {"Addresses"}, joined},
};
constexpr auto kIPv6 = cells("adapters", kIPv6Lines);
constexpr Line kEthernetLines[] = {
    {"mac_address", {"MAC Address"}, hardwareAddress},
};
constexpr auto kEthernet = cells("adapters", kEthernetLines);
constexpr Line kDnsLines[] = {
    {"dns_servers", {"ServerAddresses"},             joined},
    {"dns_domain",  {"DomainName", "SearchDomains"}, joined},
};
constexpr auto kDns = cells("adapters", kDnsLines);
constexpr Line kDhcpLines[] = {
    {"dhcp_server", {"dhcp_server_identifier"}, text},
};
constexpr auto kDhcp = cells("adapters", kDhcpLines);

constexpr struct {
  const char* key;  // null for the service itself
  std::span<const Cell<Convert>> cells;
} kParts[] = {
    {"IPv4",     kIPv4    },
    {nullptr,    kService },
    {"IPv6",     kIPv6    },
    {"Ethernet", kEthernet},
    {"DNS",      kDns     },
    {"dhcp",     kDhcp    },
};

// The names of the Wi-Fi networks by interface.
std::map<std::string, Value, std::less<>> wifiNetworks(const Profile& profile) {
  std::map<std::string, Value, std::less<>> names;
  profile.forEach("SPAirPortDataType", [&](const PropertyList& item) {
    for (const PropertyList& interface : listIn(item, "spairport_airport_interfaces")) {
      const PropertyList* network = interface.find("spairport_current_network_information");
      const PropertyList* name = network == nullptr ? nullptr : network->find("_name");
      if (name != nullptr)
        names.try_emplace(std::string(textIn(interface, "_name")), networkName(*name));
    }
  });
  return names;
}

// The workgroup of the service that names the machine, in the active location.
Value workgroup(const Profile& profile, const Value& address) {
  Value found;
  profile.forEach("SPNetworkLocationDataType", [&](const PropertyList& location) {
    if (textIn(location, "spnetworklocation_isActive") != "yes") return;
    for (const PropertyList& service : listIn(location, "spnetworklocation_services")) {
      const PropertyList* own = service.find("hardware_address");
      const PropertyList* smb = service.find("SMB");
      if (isKnown(found) || own == nullptr || smb == nullptr || hardwareAddress(*own) != address) {
        continue;
      }
      found = textValue(toUpper(textIn(*smb, "Workgroup")));
    }
  });
  return found;
}

}  // namespace

void readProfiledAdapters(const Profile& profile, Description& machine) {
  TableData& table = machine[kTable];
  table.recorded = profile.has("SPNetworkDataType");
  const Value& address = machine.machine(columnAt("machine", "mac_address"));
  if (isKnown(address)) {
    Row row = emptyRow(tableAt("machine"));
    row[columnAt("machine", "workgroup")] = workgroup(profile, address);
    complete(machine[tableAt("machine")].rows.front(), row);
  }
  const auto networks = wifiNetworks(profile);
  profile.forEach("SPNetworkDataType", [&](const PropertyList& item) {
    Row row = emptyRow(kTable);
    for (const auto& part : kParts) {
      const PropertyList* source = part.key == nullptr ? &item : item.find(part.key);
      if (source != nullptr) write(part.cells, *source, row);
    }
    const auto network = networks.find(textIn(item, "interface"));
    if (network != networks.end()) row[columnAt("adapters", "wifi_network")] = network->second;
    if (std::ranges::any_of(row, isKnown)) table.rows.push_back(std::move(row));
  });
}

}  // namespace machine::profiler
