#pragma once

#include <array>
#include <string>
#include <vector>

#include "machine/schema.h"

// How a database keeps the tables of the schema.
//
// A row is stored once, however many scans have it: in _TABLE_rows, with what of it is no number
// that changes by itself. _TABLE_links has a line for each row of each scan, with these numbers.
// How many rows of the latest scans are the same one stands with it (_now): a question about all
// machines need not walk all links. Views of the schema's names join both with the scans. So ten
// thousand machines with the same three hundred applications are three million pairs of small
// integers.

namespace fleet {

// The tables of the schema, then the findings.
constexpr std::size_t kStoredCount = machine::kTableCount + 1;
const machine::Table& storedTable(std::size_t table);

// What stands in front of a table's own columns, but for those that it has itself: the name, and
// the column of _scans. In _scans `owner` is what tells machines apart.
struct ScanColumn {
  const char* name;
  const char* source;
};
inline constexpr ScanColumn kScanColumns[] = {
    {"file",           "file"      },
    {"machine_serial", "owner"     },
    {"serial",         "serial"    },
    {"scanned_at",     "scanned_at"},
};

// The places of its columns by where they are kept.
struct Split {
  std::vector<std::size_t> shared;  // in _TABLE_rows
  std::vector<std::size_t> own;     // in _TABLE_links
};
const Split& splitOf(std::size_t table);

// Fit for a statement: "default" is also a word of the language.
std::string quotedName(const machine::Column& column);

// The statements that make an empty database.
std::string creation();

// Those that make what finds the scans of a row, which is faster made at once than kept while many
// scans come.
std::string indexing();

// A link's number is that of its scan and behind it, in so many bits, its place in the table: more
// than a file of the greatest size can have rows.
inline constexpr int kPlaceBits = 28;

// The names that users know, in order: scans, the tables with their ..._now, software_spread,
// entries.
std::vector<std::string> publicNames();

// What a database is known by (PRAGMA application_id, user_version).
inline constexpr int kApplication = 0x48555846;  // "HUXF"
inline constexpr int kVersion = 2;

}  // namespace fleet
