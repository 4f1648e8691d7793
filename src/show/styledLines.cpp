#include "show/styledLines.h"

#include <algorithm>

#include "show/columns.h"

namespace show {

namespace {

constexpr std::size_t kGap = 2;  // at least, before what ends a line

// ECMA-48, "Select graphic rendition". Of the eight colours those that can be read on black and on
// white.
const char* codeOf(Style style) {
  switch (style) {
    case Style::Bold:
      return "\x1B[1m";
    case Style::Dim:
      return "\x1B[2m";
    case Style::Good:
      return "\x1B[32m";
    case Style::Bad:
      return "\x1B[1;31m";
    case Style::Plain:
      break;
  }
  return "";
}

std::string styled(const std::string& text, Style style, bool colour) {
  const bool blank = text.find_first_not_of(' ') == std::string::npos;
  return !colour || blank || style == Style::Plain ? text : codeOf(style) + text + "\x1B[0m";
}

std::string render(const StyledLine& line, std::size_t width, bool colour) {
  std::size_t left = 0;
  for (const Span& span : line.left) left += columnsOf(span.text);
  std::size_t right = line.right.text.empty() ? 0 : kGap + columnsOf(line.right.text);
  if (right > width / 2 && right > width - std::min(left, width)) right = 0;

  std::string rendered;
  std::size_t room = width - right;
  for (const Span& span : line.left) {
    const std::string part = cut(span.text, room);
    rendered += styled(part, span.style, colour);
    room -= columnsOf(part);
    if (part != span.text) break;
  }
  if (right == 0) return rendered;
  rendered += std::string(room + kGap, ' ');
  return rendered + styled(line.right.text, line.right.style, colour);
}

}  // namespace

std::string render(const std::vector<StyledLine>& lines, std::size_t width, bool colour) {
  std::string page;
  for (const StyledLine& line : lines) page += render(line, width, colour) + "\n";
  return page;
}

}  // namespace show
