#include "redact/kinds.h"

#include <algorithm>

namespace redact {

namespace {

constexpr KindName kNames[] = {
    {"serial",           "SERIAL"   },
    {"hardware-address", ""         },
    {"network-address",  ""         },
    {"uuid",             ""         },
    {"user",             "USER"     },
    {"host",             "HOST"     },
    {"volume",           "VOLUME"   },
    {"network",          "NETWORK"  },
    {"printer",          "PRINTER"  },
    {"device",           "DEVICE"   },
    {"arguments",        "ARGUMENTS"},
    {"environment",      "VALUE"    },
};

}  // namespace

std::span<const KindName> kindNames() {
  return kNames;
}

std::string_view nameOf(Kind kind) {
  return kNames[static_cast<std::size_t>(kind)].name;
}

std::optional<Kind> findKind(std::string_view name) {
  const auto found = std::ranges::find(kNames, name, &KindName::name);
  if (found == std::end(kNames)) return std::nullopt;
  return static_cast<Kind>(found - std::begin(kNames));
}

std::optional<Kind> kindOf(std::string_view table, machine::Secret secret) {
  using machine::Secret;
  switch (secret) {
    case Secret::None:
      return std::nullopt;
    case Secret::Serial:
      return Kind::Serial;
    case Secret::HardwareAddress:
      return Kind::HardwareAddress;
    case Secret::NetworkAddress:
      return Kind::NetworkAddress;
    case Secret::Uuid:
      return Kind::Uuid;
    case Secret::User:
    case Secret::Home:
      return Kind::User;
    case Secret::Host:
      return Kind::Host;
    case Secret::FreeText:
      if (table == "adapters") return Kind::Network;
      if (table == "printers") return Kind::Printer;
      return table == "devices" ? Kind::Device : Kind::Volume;
    case Secret::Whole:
      return table == "processes" ? Kind::Arguments : Kind::Environment;
  }
  return std::nullopt;
}

}  // namespace redact
