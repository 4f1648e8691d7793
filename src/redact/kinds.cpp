#include "redact/kinds.h"

#include <algorithm>

#include "base/digits.h"

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

bool isAddress(Kind kind) {
  return kind == Kind::HardwareAddress || kind == Kind::NetworkAddress || kind == Kind::Uuid;
}

bool isWhole(Kind kind) {
  return kind == Kind::Arguments || kind == Kind::Environment;
}

std::optional<Kind> findKind(std::string_view name) {
  const auto found = std::ranges::find(kNames, name, &KindName::name);
  if (found == std::end(kNames)) return std::nullopt;
  return static_cast<Kind>(found - std::begin(kNames));
}

std::vector<Token> tokensIn(std::string_view text) {
  constexpr std::size_t kMost = 6;  // digits: more than there are secrets in a file
  std::vector<Token> tokens;
  for (std::size_t at = text.find_first_of("- "); at != std::string_view::npos;
       at = text.find_first_of("- ", at + 1)) {
    std::size_t end = at + 1;
    std::size_t number = 0;
    while (end < text.size() && isDigit(text[end]) && end - at <= kMost)
      number = 10 * number + static_cast<std::size_t>(text[end++] - '0');
    if (number == 0 || text[at + 1] == '0' || (end < text.size() && isDigit(text[end]))) continue;
    const std::string_view before = text.substr(0, at);
    const auto* const found = std::ranges::find_if(kNames, [before](const KindName& name) {
      return !name.token.empty() && before.ends_with(name.token);
    });
    if (found == std::end(kNames)) continue;
    const std::size_t begin = at - found->token.size();
    const char last = begin > 0 ? static_cast<char>(text[begin - 1] | 0x20) : '\0';
    tokens.push_back({begin, end, static_cast<Kind>(found - std::begin(kNames)), number,
                      last >= 'a' && last <= 'z'});
  }
  return tokens;
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
