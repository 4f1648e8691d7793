#pragma once

#include <string_view>

#include "machine/description.h"

// Machines of tests as text, a line for each row:
//
//   machine: serial=C02XK0AAJGH5 | cores=10 | virtual=false
//   memory:                            a row of which nothing is known
//   printers                           a table that is recorded, and has no rows
//
// Blanks in front of a line do not count; one that begins with "| " goes on with the row. What the
// schema does not know fails the test.
void addRows(machine::Description& machine, std::string_view lines);
machine::Description described(machine::Source source, std::string_view lines);

// A value of the last row of a table, to set what no line can say.
machine::Value& lastValue(machine::Description& machine, std::string_view table,
                          std::string_view column);
