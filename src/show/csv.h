#pragma once

#include <string>
#include <string_view>

#include "machine/description.h"

// A table of many machines as comma-separated values: quoting by RFC 4180, lines end in a line
// feed, what is not known is an empty cell. Texts that a spreadsheet takes for a formula, those
// that begin with
// "=", "+", "-", "@", a tab or a line end, get an apostrophe in front; numbers never.

namespace show {

// A line of values, of which there is one at least.
std::string csvLine(const machine::Row& row);

// The line of names: "file", "machine_serial" (tables have serial numbers of their own), then the
// columns of the schema.
std::string csvHeader(const machine::Table& table);

// A line for each row that the machine has in that table. None also when its file does not record
// the table, which the caller has to say elsewhere: a line of empty cells would be a row.
std::string csvRows(const machine::Table& table, const machine::Description& machine,
                    std::string_view file);

}  // namespace show
