#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "machine/description.h"
#include "page/html.h"

namespace page {

// A column of a table on a page.
struct Shown {
  std::string heading;
  std::function<std::string(const machine::Row& row)> words;  // "" for what is not known
  std::string_view meaning = {};                              // may be none
  std::function<std::string(const machine::Row& row)> below =
      {};  // in smaller letters; may be none
};

// A table whose first column heads its rows, in a frame that scrolls where it is too narrow.
// Columns of which no row knows anything are left out. `label` says what it is to those who do not
// see it.
void writeTable(Html& html, std::string_view label, std::span<const Shown> columns,
                std::span<const machine::Row* const> rows);

// All rows of a table of the schema, or the one row of "machine" with its columns below each other.
void writeWholeTable(Html& html, const machine::Table& table, const machine::TableData& data);

// Pointers to all of them.
std::vector<const machine::Row*> all(const std::vector<machine::Row>& rows);

}  // namespace page
