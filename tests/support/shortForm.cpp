#include "support/shortForm.h"

#include <algorithm>

#include "base/text.h"

namespace {

std::string token(std::string_view& rest, std::string_view ends) {
  std::string text(rest.substr(0, rest.find_first_of(ends)));
  rest.remove_prefix(text.size());
  return TrimChars(text, " ;\n", kTrimBoth);
}

// XML, which may hold what ends other values.
std::string xml(std::string_view& rest) {
  constexpr std::string_view kEnds = ";}]";
  std::size_t end = rest.find('>') + 1;
  while (end < rest.size() && kEnds.find(rest[end]) == std::string_view::npos) {
    end = std::min(rest.find('>', end), rest.size() - 1) + 1;
  }
  const std::string text(rest.substr(0, end));
  rest.remove_prefix(end);
  return text;
}

std::string value(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of("; \n"), rest.size()));
  const char open = rest.empty() ? '\0' : rest.front();
  if (open == '<') return xml(rest);
  if (open != '{' && open != '[') {
    const std::string text = token(rest, ";}]");
    if (text.starts_with('#')) return "<integer>" + text.substr(1) + "</integer>";
    return "<string>" + text + "</string>";
  }
  std::string content;
  for (rest.remove_prefix(1); rest.front() != '}' && rest.front() != ']';) {
    if (open == '{') {
      content += "<key>" + token(rest, "=") + "</key>";
      rest.remove_prefix(1);
    }
    content += value(rest);
  }
  rest.remove_prefix(1);
  return open == '{' ? "<dict>" + content + "</dict>" : "<array>" + content + "</array>";
}

}  // namespace

std::string elementsOf(std::string_view items) {
  std::string elements;
  while (!items.empty()) elements += value(items);
  return elements;
}
