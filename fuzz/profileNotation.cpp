#include "fuzz/profileNotation.h"

#include <algorithm>
#include <vector>

#include "base/digits.h"
#include "base/utf8.h"

namespace {

std::string element(std::string_view name, const std::string& content) {
  return "<" + std::string(name) + ">" + content + "</" + std::string(name) + ">\n";
}

std::string numberElement(std::string_view text) {
  std::string digits;
  for (const char c : text.substr(0, 18)) {
    const bool isSign = c == '-' && digits.empty();
    const bool isPoint = c == '.' && digits.find('.') == std::string::npos;
    if (isDigit(c) || isSign || isPoint) digits += c;
  }
  if (digits.find_first_of("0123456789") == std::string::npos) digits += "0";
  return element(digits.find('.') == std::string::npos ? "integer" : "real", digits);
}

// The digits of the text in their places.
std::string dateElement(std::string_view text) {
  std::string date = "2001-01-01T00:00:00Z";
  for (std::size_t i = 0; i < std::min(text.size(), date.size()); ++i)
    if (isDigit(date[i]) && isDigit(text[i])) date[i] = text[i];
  return element("date", date);
}

}  // namespace

std::string fuzz::escaped(std::string_view text) {
  std::string characters;
  for (const char c : validUtf8(text)) {
    if (c == '&')
      characters += "&amp;";
    else if (c == '<')
      characters += "&lt;";
    else if (c == '>')
      characters += "&gt;";
    else
      characters += static_cast<unsigned char>(c) < ' ' ? '?' : c;
  }
  return characters;
}

std::string fuzz::propertyListOf(std::string_view lines) {
  constexpr std::size_t kDeepest = 500;
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<array>\n";
  std::vector<std::string_view> open{"array"};
  const auto key = [&](std::string_view text) {
    if (open.back() == "dict") xml += element("key", escaped(text));
  };
  const auto begin = [&](std::string_view name, std::string_view text) {
    key(text);
    xml += "<" + std::string(open.emplace_back(name)) + ">\n";
  };
  const auto end = [&] {
    xml += "</" + std::string(open.back()) + ">\n";
    open.pop_back();
  };
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
    const bool deepest = open.size() == kDeepest;
    if (line == "]") {
      if (open.size() > 1) end();
    } else if (line.starts_with('[') && !deepest) {
      begin("array", line.substr(1));
    } else if (line.starts_with('{') && !deepest) {
      begin("dict", line.substr(1));
    } else {
      const std::size_t mark = std::min(line.find_first_of("=#@!"), line.size());
      const std::string_view value = line.substr(std::min(mark + 1, line.size()));
      key(line.substr(0, mark));
      if (mark == line.size() || line[mark] == '=')
        xml += element("string", escaped(value));
      else if (line[mark] == '#')
        xml += numberElement(value);
      else if (line[mark] == '@')
        xml += dateElement(value);
      else
        xml += "<true/>\n";
    }
  }
  while (!open.empty()) end();
  return xml + "</plist>\n";
}
