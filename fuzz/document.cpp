#include "huxread/document.h"

#include <cstddef>
#include <vector>

#include "fuzz/fuzzers.h"
#include "huxread/check.h"
#include "huxread/container.h"
#include "huxread/handmade.h"

using huxread::Document;

namespace {

void write(std::span<const huxread::Property> properties, std::string& text) {
  for (const auto& [key, value] : properties) ((((text += '~') += key) += '=') += value) += '\n';
}

// A branch without children reads as a leaf does, and is written as one.
void write(const huxread::TagView& tag, std::string& text) {
  const auto firstChild = tag.firstChild();
  text += firstChild ? '+' : '*';
  (((text += tag.name()) += '=') += tag.value()) += '\n';
  write(tag.properties(), text);
  for (const huxread::Attribute& attribute : tag.attributes()) {
    (((text += attribute.name) += '=') += attribute.value) += '\n';
    write(attribute.properties, text);
  }
  for (auto child = firstChild; child; child = child->nextSibling()) write(*child, text);
  if (firstChild) text += "-\n";
}

std::string textOf(const Document& document) {
  std::string text(Document::kFirstLine);
  for (auto tag = document.top(); tag; tag = tag->nextSibling()) write(*tag, text);
  return text;
}

// The first lines of a text, up to the line of that number and not with it, 0 for all of them; as
// `write` writes them: branches without children as leaves, and those that are still open ended.
std::string linesBefore(std::size_t number, const std::string& text) {
  struct Branch {
    std::size_t at;
    bool hasChildren;
  };
  std::string lines(Document::kFirstLine);
  std::vector<Branch> open;
  const auto end = [&] {
    if (open.back().hasChildren)
      lines += "-\n";
    else
      lines[open.back().at] = '*';
    open.pop_back();
  };
  std::size_t begin = lines.size();
  for (std::size_t line = 2; line != number && begin < text.size(); ++line) {
    const std::size_t next = text.find('\n', begin) + 1;
    const char mark = text[begin];
    if (mark == '-') {
      end();
    } else {
      if ((mark == '*' || mark == '+') && !open.empty()) open.back().hasChildren = true;
      if (mark == '+') open.push_back({lines.size(), false});
      lines += text.substr(begin, next - begin);
    }
    begin = next;
  }
  while (!open.empty()) end();
  return lines;
}

}  // namespace

// Any bytes as the text form of a document, as far as it goes, and as the report of a file that is
// checked. What was read, written again, is the text.
bool fuzz::document(const std::string& input) {
  const auto document = Document::parse(input);
  std::size_t line = 0;
  const Document salvaged = Document::salvage(input, line);
  expect(static_cast<bool>(document) == (line == 0), "what is whole needs no salvaging");
  if (document) expect(textOf(*document) == linesBefore(0, input), "every line was read");
  const std::string text = textOf(salvaged);
  if (line != 1) expect(text == linesBefore(line, input), "every line before was salvaged");
  const auto again = Document::parse(text);
  expect(again && textOf(*again) == text, "what was written can be read");
  const auto file = huxread::Container::parse(fileOfOne("customdata", zlibStream(input)));
  expect(static_cast<bool>(file), "a file of any text can be opened");
  (void)huxread::check(*file);
  return static_cast<bool>(document);
}
