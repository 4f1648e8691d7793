#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "machine/schema.h"

namespace redact {

// The kinds of secrets, as a person names them, in the order of kindNames.
enum class Kind : std::uint8_t {
  Serial,
  HardwareAddress,
  NetworkAddress,
  Uuid,
  User,  // names of people and of their home folders, addresses of their mail
  Host,  // names of machines and domains
  Volume,
  Network,  // names of network services and of Wi-Fi networks
  Printer,
  Device,
  Arguments,  // whole command lines of processes
  Environment,
};

struct KindName {
  std::string_view name;  // "hardware-address"
  std::string_view
      token;  // what stands before the number of its tokens: "SERIAL"; "" for addresses
};

std::span<const KindName> kindNames();
std::string_view nameOf(Kind kind);
// Whether its secrets are hexadecimal digits, as their tokens are.
bool isAddress(Kind kind);
// Whether its secrets are whole texts, of which no name is made.
bool isWhole(Kind kind);
std::optional<Kind> findKind(std::string_view name);

// A token in a text: "SERIAL-1", and "HOST 2" where the network does not name it.
struct Token {
  std::size_t begin;
  std::size_t end;
  Kind kind;
  std::size_t number;
  bool within;  // a word, as where a serial number was found
};

// Those of a text, in order.
std::vector<Token> tokensIn(std::string_view text);

// What a secret of that table is; nothing of one that is none. A path that may lie in a home folder
// gives away a user.
std::optional<Kind> kindOf(std::string_view table, machine::Secret secret);

}  // namespace redact
