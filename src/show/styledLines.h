#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "show/terminal.h"

// Lines of texts that each have a style. The texts are safe for a terminal already (onOneLine).

namespace show {

enum class Style { Plain, Bold, Dim, Good, Bad };

struct Span {
  std::string text;
  Style style = Style::Plain;
};

struct StyledLine {
  std::vector<Span> left;
  Span right = {};  // ends the line, when it fits beside the left or takes no more than half of it
};

// Each line with a line feed, cut at `width` columns; styles only where there are colours.
std::string render(const std::vector<StyledLine>& lines, std::size_t width, bool colour);

}  // namespace show
