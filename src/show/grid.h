#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "machine/description.h"

namespace show {

// Rows in columns, for eyes. Every line ends with a line feed; nothing steers a terminal.
class Grid {
 public:
  // `sample` decides how wide the columns are and which hold numbers, which stand at the right; all
  // rows have as many values as there are names. With a `width`, of a terminal, lines fit into so
  // many columns: texts are cut, and where little would be left of them, rows stand one below the
  // other with a line for each known value.
  Grid(std::vector<std::string> names, const std::vector<machine::Row>& sample, std::size_t width);

  std::string header() const;  // "" when names stand beside the values
  std::string row(const machine::Row& row) const;

 private:
  bool narrow();
  std::string line(const std::vector<std::string>& cells) const;

  std::vector<std::string> names_;
  std::vector<std::size_t> widths_;
  std::vector<bool> numbers_;
  std::size_t width_;
  bool below_ = false;  // rows one below the other
};

}  // namespace show
