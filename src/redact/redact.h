#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "huxread/container.h"
#include "huxread/result.h"
#include "platform/host.h"
#include "redact/kinds.h"

// A snapshot file without what gives people and machines away: the same sections with the same
// texts, in which a token stands for each secret, the same one wherever that is.

namespace redact {

struct Count {
  std::size_t values = 0;  // different ones
  std::size_t places = 0;  // where they stand
};

struct Redacted {
  std::string file;           // the bytes of the new file
  std::vector<Count> counts;  // by kind, of what was replaced
  std::vector<Count> kept;    // and of what was left as was asked; its places are not counted
  std::vector<std::pair<std::string, std::string>> pairs;  // what became what, by kind
  std::vector<std::string> common;                         // were replaced at their own places only
  std::set<std::string> everybodys;  // were left, being what every Mac has: "root", "Ethernet"
  std::set<std::string> parts;       // of names, that were replaced where they stood alone
  std::set<std::string> tokens;      // were left, as they look like tokens already
  std::set<Kind> left;  // of which something is in the result all the same: a fault of this program
  std::set<Kind> inName;  // of which something is in the name
};

// Fails when a section cannot be read or is of a type that is not known: nobody can tell what it
// holds. `name` is a text that must hold none of the secrets, the name of the new file.
huxread::Result<Redacted> redact(const huxread::Container& file, platform::Host& host,
                                 const std::set<Kind>& kept, std::string_view name);

}  // namespace redact
