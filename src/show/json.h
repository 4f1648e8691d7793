#pragma once

#include <string>
#include <string_view>

#include "machine/description.h"

namespace show {

enum class JsonLayout {
  Lines,    // one row of a table on each line, for people and for grep(1)
  Compact,  // all of it on one line: several documents are JSON Lines
};

// All that is known of a machine as one JSON document, docs/hux.schema.json describes it; it ends
// with a line feed. Always valid UTF-8: bytes of the file's name that are none become U+FFFD.
std::string json(const machine::Description& machine, std::string_view file, JsonLayout layout);

}  // namespace show
