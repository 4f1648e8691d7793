#include "fuzz/readBack.h"

#include "fuzz/fuzzers.h"
#include "huxread/check.h"
#include "huxread/document.h"

namespace {

// Whether it is the text form of the document; behind that stand zero bytes.
bool isWritten(std::string_view text, kevaDoc& document) {
  const std::string written = document.pack(false, false);
  return written.starts_with(text) &&
         written.find_first_not_of('\0', text.size()) == std::string::npos;
}

// How many of each there are, so that no name can pass for a line of another kind.
struct Count {
  std::size_t tags = 0;
  std::size_t attributes = 0;
  std::size_t properties = 0;
  bool operator==(const Count&) const = default;
};

void add(const Tag& tag, Count& count) {
  ++count.tags;
  count.attributes += tag.attributeCount();
  count.properties += tag.propertyCount();
  for (const auto& attribute : tag.attributes()) count.properties += attribute->properties().size();
  for (const auto& child : tag.children()) add(*child, count);
}

void add(const huxread::TagView& tag, Count& count) {
  ++count.tags;
  count.attributes += tag.attributes().size();
  count.properties += tag.properties().size();
  for (const auto& attribute : tag.attributes()) count.properties += attribute.properties.size();
  for (auto child = tag.firstChild(); child; child = child->nextSibling()) add(*child, count);
}

}  // namespace

huxread::Container fuzz::readBack(HUXfile& file) {
  auto container = huxread::Container::parse(file.buildImage(true));
  expect(static_cast<bool>(container), "what is written can be opened");
  expect(huxread::check(*container).empty(), "nothing is wrong with what is written");
  expect(container->sections().size() == file.sections().size(), "every section is there");
  for (const HUXfile::Section& section : file.sections()) {
    const auto number = static_cast<std::uint32_t>(&section - file.sections().data());
    const auto text = container->text(number);
    expect(text && isWritten(*text, *section.document),
           "a section holds the text that was written");
    const auto document = huxread::Document::parse(*text);
    Count before;
    Count after;
    add(section.document->top(), before);
    add(*document->top(), after);
    expect(before == after, "every tag, attribute and property is read as one");
  }
  return std::move(*container);
}
