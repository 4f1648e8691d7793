#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "keva/namedList.h"
#include "keva/tagValue.h"

class Deflater;

// The node of the tag tree. A tag owns its children, attributes, properties and value: pointers
// that the operations return stay its own, and live as long as it does, those to children until
// reorderChildren. There is no parent pointer and nothing removes a node. Look-ups that find
// nothing return null.

// An annotation of a tag or of an attribute. Its text is kept as given, without normal form: what
// comes from outside comes from a TagValue, which has it.
struct TagProperty {
  std::string key;
  std::string value;
};

// The annotations of one tag or attribute in the order they were added; a key may occur twice. Most
// have none, so that nothing but a pointer is kept then.
class TagProperties {
 public:
  TagProperties() = default;
  TagProperties(const TagProperties& other) { *this = other; }
  TagProperties(TagProperties&&) = default;
  TagProperties& operator=(const TagProperties& other);
  TagProperties& operator=(TagProperties&&) = default;
  ~TagProperties() = default;

  const std::vector<TagProperty>& list() const;
  void add(std::string_view key, std::string_view value);
  TagProperty* find(std::string_view key) const;  // the first of that key; null when there is none

 private:
  std::unique_ptr<std::vector<TagProperty>> list_;  // null until there is one
};

// A named value of a tag.
class TagAttribute {
 public:
  TagAttribute() = default;
  TagAttribute(const TagAttribute&) = default;
  TagAttribute(TagAttribute&&) = default;
  TagAttribute& operator=(const TagAttribute&) = delete;  // a list finds it by its name
  TagAttribute& operator=(TagAttribute&&) = delete;
  ~TagAttribute() = default;

  // With one property (propKey, propValue) when `propKey` is not null; a null `propValue` is "".
  TagAttribute(SharedText name, TagValue&& value, const char* propKey, const char* propValue);

  const SharedText& name() const { return name_; }

  const TagValue& value() const { return value_; }
  TagValue& value() { return value_; }

  const std::vector<TagProperty>& properties() const { return properties_.list(); }

  // Appends, also when a property of that key exists.
  void addProperty(std::string_view key, std::string_view value);

  // Replaces the text of the first property of that key, or appends.
  void setProperty(std::string_view key, std::string_view value);

  // The text of the first property of that key; null when there is none.
  const std::string* findProperty(std::string_view key) const;

 private:
  TagProperties properties_;
  TagValue value_;
  SharedText name_;
};

class Tag {
 public:
  enum class Kind {
    Holder,  // nameless root of a document
    Leaf,    // every named tag at first
    Branch,  // a tag that got a child or was passed through on the way to one; stays one
  };

  Tag() = default;                      // nameless leaf
  explicit Tag(std::string_view name);  // leaf
  explicit Tag(SharedText name);
  Tag(Kind kind, std::string_view firstChildName);  // nameless, with one leaf of that name
  Tag(Tag&&) noexcept;
  Tag(const Tag&) = delete;  // copyFrom says what a copy costs
  Tag& operator=(const Tag&) = delete;
  Tag& operator=(Tag&&) = delete;
  ~Tag();

  // Replaces this tag, its name included, by a deep copy of `other`. Only for a tag that is in no
  // list of children: its parent finds it by the name that it was added with.
  void copyFrom(const Tag& other);

  Kind kind() const { return kind_; }
  const SharedText& name() const { return name_; }

  // The tag's own value; null until it is first set.
  const TagValue* value() const { return value_.get(); }
  void setValue(TagValue value);  // replaces it, also by a value of kind None

  // --- children, in the order they were added

  Tag* findChild(std::string_view name) const;            // the first of that name
  Tag* child(std::string_view name);                      // finds it or appends a leaf
  Tag* child(const SharedText& name);                     // the same, sharing the name
  Tag* setChild(std::string_view name, TagValue value);   // the same, then its setValue
  Tag* setChild(const SharedText& name, TagValue value);  // the same, sharing the name
  Tag* addChild(Tag child);               // appends without looking at names; makes a branch
  Tag* childAt(std::size_t index) const;  // null from childCount() on
  std::size_t childCount() const { return children_.size(); }
  const NamedList<Tag>& children() const { return children_; }

  // Says of a tag without children how many are likely to come, at most, so that a long list is
  // made in one piece.
  void expectChildren(std::size_t count) { children_.expect(count); }

  // Puts the children into another order; see NamedList::reorder.
  void reorderChildren(const std::vector<std::size_t>& order) { children_.reorder(order); }

  // The smallest n from 1 such that no child is named `prefix` followed by n.
  unsigned nextFreeIndex(const std::string& prefix) const {
    return children_.nextFreeIndex(prefix);
  }

  // --- attributes, in the order they were added

  TagAttribute* findAttribute(std::string_view name) const;  // the first of that name

  // Finds the attribute and assigns the value, as TagValue assigns (none changes nothing), leaving
  // its properties alone; or appends it, with the property when `propKey` is not null.
  TagAttribute* setAttribute(std::string_view name, TagValue value, const char* propKey = nullptr,
                             const char* propValue = nullptr);
  TagAttribute* setAttribute(const SharedText& name, TagValue&& value);  // shares the name
  void addAttribute(const SharedText& name, TagValue&& value);  // appends without looking at names

  // Says how many attributes are likely to come, at most, so that they take no more room than they
  // need.
  void expectAttributes(std::size_t count) { attributes_.expect(count); }

  TagAttribute* attributeAt(std::size_t index) const;  // null from attributeCount() on
  std::size_t attributeCount() const { return attributes_.size(); }
  const NamedList<TagAttribute>& attributes() const { return attributes_; }

  // --- properties, in the order they were added; a key may occur twice

  void addProperty(std::string_view key, std::string_view value);
  std::size_t propertyCount() const { return properties().size(); }
  const std::vector<TagProperty>& properties() const { return properties_.list(); }

  // --- paths (tagPath.cpp): names separated by "/", the last one that of an attribute
  //
  // A leading "/" goes on to the first child: on a document's holder that is the top tag. An empty
  // component within a path does the same, so a path never makes a tag with an empty name; a path
  // that ends in "/" names the attribute with the empty name. Nothing is escaped.

  // Walks the path, making missing tags on the way, and sets the attribute at its end: as
  // setAttribute, but on an attribute that exists the property is set too, if both its parts are
  // given. Returns the attribute; null, and sets none, when an empty component meets a tag without
  // children (tags made on the way to it stay), or the path holds more than kMaxPathDepth "/" or
  // kMaxPathLength bytes.
  TagAttribute* setPath(std::string_view path, TagValue value, const char* propKey = nullptr,
                        const char* propValue = nullptr);

  // The tag on which setPath would set the attribute of the path: the same walk, making the same
  // tags. `name` receives the last component. Null where setPath returns null.
  Tag* walkPath(std::string_view path, std::string_view& name);

  // Adds a property to an existing tag. The last component names a child, and each "/" between two
  // components also skips one level: "a/b" is the child "b" of the first child of "a". Adds nothing
  // when a tag on the way is missing; a leaf that the walk met on the way is a branch then.
  void addPropertyAt(std::string_view path, std::string_view key, std::string_view value);

  static constexpr std::size_t kMaxPathLength = 16384;  // every value set by path walks all of it
  static constexpr std::size_t kMaxPathDepth = 2048;    // trees are walked recursively

  // --- text form (tagText.cpp); docs/hux-format.md has the grammar

  // Writes the text form to buffer + offset, a NUL behind it, and returns the number of bytes
  // without that NUL. The buffer must have room: textSize with its slack, see kevaDoc.
  // `noEndMark` leaves out a branch's closing line, `noChildren` its children and closing line;
  // both hold for this tag (on a holder: for its children), not below. A branch with properties is
  // also mentioned on standard error, as a trace for support.
  unsigned writeText(char* buffer, unsigned offset, bool noEndMark, bool noChildren) const;

  // The same, as part of a compressed stream.
  void writeText(Deflater& stream, bool noEndMark, bool noChildren) const;

  // Estimated length of the text form, in bytes; the sectioned blobs state it as a length. It
  // counts a leaf's children although they are not written, of a holder the first child alone, and
  // with `noChildren` not the tag's own properties although they are.
  unsigned textSize(bool noChildren) const;

 private:
  void becomeBranch();

  Kind kind_ = Kind::Leaf;
  NamedList<Tag> children_;
  NamedList<TagAttribute> attributes_;
  TagProperties properties_;
  SharedText name_;
  std::unique_ptr<TagValue> value_;
};
