#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inspect/compare.h"
#include "machine/description.h"

namespace show {

enum class JsonLayout {
  Lines,    // one row of a table on each line, for people and for grep(1)
  Compact,  // all of it on one line: several documents are JSON Lines
};

// A row as an object on one line, without a line feed; names are to differ.
std::string jsonObject(const std::vector<std::string>& names, const machine::Row& row);

// All that is known of a machine as one JSON document, docs/hux.schema.json describes it; it ends
// with a line feed. Always valid UTF-8: bytes of the file's name that are none become U+FFFD.
std::string json(const machine::Description& machine, std::string_view file, JsonLayout layout);

// Members of an object, without its braces, that say which file this is and which machine it is of:
// file, source, serial, uuid, name, scanned_at.
std::string fileMembers(const machine::Description& machine, std::string_view file);

// What changed, as an array on one line. A whole row is {"change":"added" or "removed","table":...,
// "row":...,"values":{...}}, a value {"change":"changed","table":...,"row":...,"column":...,
// "before":...,"after":...}.
std::string changesArray(const std::vector<inspect::Change>& changes);

}  // namespace show
