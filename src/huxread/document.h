#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/result.h"

namespace huxread {

// A document of a snapshot file as a tree, read from its text form (docs/hux-format.md). Names and
// values are the file's own bytes: anything but line feeds and, in names, whatever they may hold.

struct Property {
  std::string_view key;
  std::string_view value;
};

struct Attribute {
  std::string_view name;
  std::string_view value;
  std::span<const Property> properties;

  // The value of the first property of that key; nothing when there is none.
  std::optional<std::string_view> property(std::string_view key) const;
};

class Document;

// A tag of a document: a view, valid as long as the document stays where it is. Siblings may share
// a name, tags and attributes too; look-ups give the first one, and lists keep the order of the
// text.
class TagView {
 public:
  std::string_view name() const;
  std::string_view value() const;  // "" when it has none
  std::span<const Attribute> attributes() const;
  std::span<const Property> properties() const;

  // The value of the first one of that name; nothing when there is none.
  std::optional<std::string_view> attribute(std::string_view name) const;
  std::optional<std::string_view> property(std::string_view key) const;

  // Children in order; a walk over them is linear, and so is the look-up of one.
  std::optional<TagView> firstChild() const;
  std::optional<TagView> nextSibling() const;
  std::optional<TagView> child(std::string_view name) const;

 private:
  friend class Document;
  TagView(const Document& document, std::uint32_t index) : document_(&document), index_(index) {}

  const Document* document_;
  std::uint32_t index_;
};

// Owns the text, and moves without it: attributes and texts stay valid. In memory it takes the text
// and about 50 bytes for each of its lines.
class Document {
 public:
  // Takes the text form over. Fails, naming the line, when the first line is not that of the text
  // form, when a branch is not ended or an end has no branch, when a line is no entry or not ended,
  // and beyond kMaxDepth branches in each other and kMaxLines. Where a name holds "=", the line is
  // split where the name agrees with the tag's own value ("*Soft:A=B 1.0=A=B"), else at the first
  // one.
  static Result<Document> parse(std::string text);

  // What can be read of a text that was cut off or is damaged further on: every whole line up to
  // there, with the branches that are still open ended. `line` is the first line that could not be
  // read or is missing, 0 when the text is whole.
  static Document salvage(std::string text, std::size_t& line);

  // The first tag of the outermost level; nothing when there is none.
  std::optional<TagView> top() const;

  static constexpr std::string_view kFirstLine = "\xEF\xBB\xBF?keva\n";
  static constexpr std::size_t kMaxDepth = 512;
  static constexpr std::size_t kMaxLines = std::size_t{8} << 20;

 private:
  friend class TagView;
  class Parser;

  struct Tag {
    std::string_view name;
    std::string_view value;
    std::uint32_t firstAttribute;
    std::uint32_t attributeCount;
    std::uint32_t firstProperty;
    std::uint32_t propertyCount;
    std::uint32_t firstChild;   // kNone when there is none
    std::uint32_t nextSibling;  // kNone when there is none
  };
  static constexpr std::uint32_t kNone = UINT32_MAX;

  explicit Document(std::string text);
  std::optional<TagView> view(std::uint32_t index) const;

  std::unique_ptr<const std::string> text_;  // does not move when the document does
  std::vector<Tag> tags_;                    // as they stand in the text
  std::vector<Attribute> attributes_;
  std::vector<Property> properties_;
};

}  // namespace huxread
