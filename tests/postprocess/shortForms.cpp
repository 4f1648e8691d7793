#include "shortForms.h"

#include "base/text.h"

namespace {

std::string token(std::string_view& rest, std::string_view ends) {
  std::string text(rest.substr(0, rest.find_first_of(ends)));
  rest.remove_prefix(text.size());
  return TrimChars(text, " ;\n", kTrimBoth);
}

std::string value(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of("; \n"), rest.size()));
  const char open = rest.empty() ? '\0' : rest.front();
  if (open != '{' && open != '[') {
    const std::string text = token(rest, ";}]");
    if (text.starts_with('<')) return text;
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

kevaDoc rawDocument(std::initializer_list<std::string_view> typesAndItems) {
  kevaDoc raw(true, "Macintosh");
  for (auto it = typesAndItems.begin(); it != typesAndItems.end(); it += 2) {
    std::string_view items = it[1];
    std::string xml;
    while (!items.empty()) xml += value(items);
    addRawItems(raw, it[0], xml);
  }
  return raw;
}

std::string lines(std::string text) {
  for (std::size_t at = text.find(" | "); at != std::string::npos; at = text.find(" | ", at)) {
    text.replace(at, 3, "\n");
  }
  if (text.starts_with('\n')) text.erase(0, 1);
  return text.ends_with('\n') ? text : text + "\n";
}
