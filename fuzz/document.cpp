#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "huxread/check.h"
#include "huxread/container.h"
#include "huxread/document.h"
#include "huxread/handmade.h"

// Reads any bytes as the text form of a document, as far as it goes, and as the report of a file
// that is checked. What is read as a document must be the whole text: it is put together again and
// compared. fuzz/corpus/document holds the seeds; the tests run them through this same function.
//
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -Isrc -Itests fuzz/document.cpp
//       src/huxread/*.cpp src/base/formatString.cpp -lz -o document
//   ./document -max_len=4096 NEW_FOLDER fuzz/corpus/document

namespace {

void append(std::span<const huxread::Property> properties, std::string& text) {
  for (const auto& [key, value] : properties) (((text += '~') += key) += '=') += value;
}

// Without marks and line feeds, in which a branch without children and a leaf would differ.
void append(const huxread::TagView& tag, std::string& text) {
  ((text += tag.name()) += '=') += tag.value();
  append(tag.properties(), text);
  for (const huxread::Attribute& attribute : tag.attributes()) {
    ((text += attribute.name) += '=') += attribute.value;
    append(attribute.properties, text);
  }
  for (auto child = tag.firstChild(); child; child = child->nextSibling()) append(*child, text);
}

std::string entriesOf(const huxread::Document& document) {
  std::string text;
  for (auto tag = document.top(); tag; tag = tag->nextSibling()) append(*tag, text);
  return text;
}

std::string entriesOf(const std::string& text) {
  std::string entries;
  for (std::size_t at = text.find('\n') + 1; at < text.size(); at = text.find('\n', at) + 1) {
    std::string line = text.substr(at, text.find('\n', at) - at);
    if (line.starts_with('+') || line.starts_with('*')) line.erase(0, 1);
    if (line != "-") entries += line;
  }
  return entries;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::size_t line = 0;
  const huxread::Document salvaged = huxread::Document::salvage(text, line);
  const std::string entries = entriesOf(salvaged);
  const auto document = huxread::Document::parse(text);
  if (static_cast<bool>(document) != (line == 0)) std::abort();
  if (document && entriesOf(*document) != entriesOf(text)) std::abort();
  if (document && entriesOf(*document) != entries) std::abort();
  const auto file = huxread::Container::parse(fileOfOne("customdata", zlibStream(text)));
  if (!file) std::abort();
  (void)huxread::check(*file);
  return 0;
}
