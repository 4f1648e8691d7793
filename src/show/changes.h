#pragma once

#include <string>
#include <vector>

#include "inspect/compare.h"
#include "machine/description.h"
#include "show/styledLines.h"

// What changed from one file to another, for people and for programs.

namespace show {

// A value as people read it: "8 GB", "60 Hz", "yes"; "" for what is not known. A text stays as it
// is, on one line.
std::string figureOf(const machine::Column& column, const machine::Value& value);

// What people call a column: its name without the unit, "system version" for os_version.
std::string labelOf(const machine::Column& column);

// A line for each row that came, went or changed, and for each value of a table with one row:
//
//     memory 16 -> 8 GB
//   + disk SELBY DVD-R
//     Safari 17.4 -> 17.5
//   - user mara
//
// Lines that are the same become one that says how many they are. Where a row went and one came
// with the same line, both say what identifies them.
std::vector<StyledLine> changeLines(const std::vector<inspect::Change>& changes);

}  // namespace show
