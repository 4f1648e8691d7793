#include "keva/kevaDoc.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/bytes.h"
#include "base/formatString.h"
#include "keva/deflate.h"

namespace {

// The estimate is short of the text by a tag's own properties in one of its cases; writers take
// this much more.
constexpr unsigned kSlack = 102;

// The text form of one section of a sectioned block, as a zlib stream.
std::string packedSection(const Tag& tag, bool noEndMark, bool noChildren) {
  Deflater deflater(kTagSite);
  tag.writeText(deflater, noEndMark, noChildren);
  return deflater.finish();
}

}  // namespace

kevaDoc::kevaDoc(bool nativeByteOrder, std::string_view topName)
    : nativeByteOrder_(nativeByteOrder), holder_(Tag::Kind::Holder, topName) {}

kevaDoc::kevaDoc(const kevaDoc& other) : nativeByteOrder_(other.nativeByteOrder_) {
  holder_.copyFrom(other.holder_);
}

TagAttribute* kevaDoc::set(std::string_view path, TagValue value, const char* propKey,
                           const char* propValue) {
  return holder_.setPath(path, std::move(value), propKey, propValue);
}

unsigned kevaDoc::textSize() const {
  return holder_.textSize(false) + kSlack;
}

unsigned kevaDoc::writeText(char* buffer, unsigned offset, bool noEndMark, bool noChildren) const {
  return holder_.writeText(buffer, offset, noEndMark, noChildren);
}

std::string kevaDoc::pack(bool sectioned, bool compressed) {
  return sectioned ? packSectioned(compressed) : packPlain(compressed);
}

std::string kevaDoc::text(bool noEndMark) const {
  // The estimate knows the top tag alone; a path without its leading "/" makes it siblings.
  std::size_t room = textSize() + 1;
  for (std::size_t i = 1; i < holder_.childCount(); ++i)
    room += holder_.childAt(i)->textSize(false);
  std::string buffer(room, '\0');
  buffer.resize(writeText(buffer.data(), 0, noEndMark, false));
  return buffer;
}

std::string kevaDoc::packPlain(bool compressed) const {
  if (!compressed) {
    std::string block = text(false);
    block.resize(std::max<std::size_t>(block.size(), textSize()), '\0');
    return block;
  }
  Deflater deflater(kDocumentSite);
  holder_.writeText(deflater, false, false);
  std::string block = deflater.finish();
  block.append({'\0', '\1', 'K', 'E', 'V', 'A'});
  return block;
}

void kevaDoc::addToIndex(std::string_view name, unsigned length, std::string data) {
  const unsigned offset =
      sectionIndex_.empty() ? 0 : sectionIndex_.back().offset + sectionIndex_.back().length;
  sectionIndex_.push_back({std::string(name), offset, length, std::move(data)});
}

std::string kevaDoc::indexText() const {
  std::string text;
  for (const IndexEntry& entry : sectionIndex_) {
    text += formatString("[%s]\noffset=%u\nlength=%u\n", entry.name.c_str(), entry.offset,
                         entry.length);
  }
  return text;
}

std::string kevaDoc::packSectioned(bool compressed) {
  const auto add = [&](std::string_view name, const Tag& tag, bool root) {
    std::string data = compressed ? packedSection(tag, root, root) : "";
    const unsigned length = compressed ? static_cast<unsigned>(data.size()) : tag.textSize(root);
    addToIndex(name, length, std::move(data));
  };
  sectionIndex_.clear();
  add("Root", top(), true);
  for (const auto& child : top().children()) add(child->name(), *child, false);

  std::string block = compressed ? "" : text(true);
  for (const IndexEntry& entry : sectionIndex_) block += entry.data;
  const auto indexOffset = static_cast<std::uint32_t>(block.size());
  block += compressed ? deflateOrEnd(indexText(), kDocumentSite) : indexText();
  appendInteger(block, indexOffset, nativeByteOrder_);
  block.push_back('\1');
  block.push_back(compressed ? '\1' : '\0');
  return block;
}
