#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "keva/kevaDoc.h"

// What all steps share: reading the raw tree, writing the snapshot, and the tables between them.

// The text of a value; "" when it is no text.
const SharedText& textOf(const TagValue& value);

// A reported item of the raw tree: a tag whose attributes are the profiler's keys. It is a view,
// and must not outlive the document.
class Item {
 public:
  explicit Item(const Tag& tag) : tag_(&tag) {}

  bool has(std::string_view key) const { return tag_->findAttribute(key) != nullptr; }

  // The value of a key, with its kind; of kind None when the item lacks the key.
  const TagValue& value(std::string_view key) const;

  // The text of a key; "" when the item lacks it or its value is no text.
  const SharedText& text(std::string_view key) const;

  // The integer of a key; 0 when the item lacks it or its value is no integer.
  std::int64_t integer(std::string_view key) const;

  // The nested tag of that name; null when there is none.
  const Tag* child(std::string_view name) const { return tag_->findChild(name); }

  const Tag& tag() const { return *tag_; }

 private:
  const Tag* tag_;
};

// The items of a data type in the order they were reported; none when it is missing.
std::vector<Item> items(const kevaDoc& raw, std::string_view dataType);

// The children of an item's nested list or dictionary; none when it is missing.
std::vector<Item> nestedItems(const Item& item, std::string_view name);

// --- quantities of an item, read by one of the parsers of base/quantities.h

// 0 when the item lacks the key. A value that is too short for a size, or no text, ends the run by
// the parser's std::out_of_range, which nothing catches: a machine whose memory cannot be read is
// not reported as one without memory.
template <typename Parser>
auto strictQuantity(const Parser& parse, const Item& item, std::string_view key) {
  using Result = decltype(parse(item.text(key)));
  return item.has(key) ? parse(item.text(key)) : Result{0};
}

// 0 also for what cannot be a size.
template <typename Parser>
auto quantity(const Parser& parse, const Item& item, std::string_view key) {
  constexpr std::size_t kShortest = 3;
  using Result = decltype(parse(item.text(key)));
  return item.text(key).size() < kShortest ? Result{0} : parse(item.text(key));
}

// --- tables: "the value of a key, converted, becomes an attribute"

struct Conversion {
  TagValue (*apply)(const TagValue& source, const char* word);
  const char* word = nullptr;  // for conversions that compare
  bool absentToo = false;      // an absent key is converted too, as a value of kind None
};

// Its texts are part of the program.
struct Row {
  const char* attribute = nullptr;
  const char* keys[4] = {};  // the first one that the item has; the others are null
  Conversion convert;
};

// Sets, in the order of the rows, every attribute that has a source.
void write(std::span<const Row> rows, const Item& item, Tag& target);

// The same for one key of an item, for steps that keep the order of the keys: sets the attributes
// of the rows that name it.
void write(std::span<const Row> rows, std::string_view key, const TagValue& value, Tag& target);

// The same for a single key, copied.
void copyPresent(const Item& item, std::string_view key, Tag& target, std::string_view attribute);

namespace conversion {
TagValue copy(const TagValue& source, const char* word);
TagValue compare(const TagValue& source, const char* word);
TagValue compareNot(const TagValue& source, const char* word);
TagValue firstWord(const TagValue& source, const char* word);
}  // namespace conversion

// The value as it is, with its kind.
inline constexpr Conversion copied{conversion::copy};
// "1" when the text is exactly `word`, else "0"; a value that is no text is not `word`.
constexpr Conversion oneIf(const char* word) {
  return {conversion::compare, word};
}
// "0" when the text is exactly `word`, else "1".
constexpr Conversion zeroIf(const char* word) {
  return {conversion::compareNot, word};
}
// The text up to its first blank.
inline constexpr Conversion firstWord{conversion::firstWord};
// The same conversion, and what it makes of nothing when the key is absent.
constexpr Conversion orAbsent(Conversion convert) {
  convert.absentToo = true;
  return convert;
}

// --- writing

// The tag below the snapshot's top tag that the names lead to, made when missing.
Tag& branch(kevaDoc& snapshot, std::span<const std::string_view> names);
Tag& branch(kevaDoc& snapshot, std::initializer_list<std::string_view> names);

// A numbered list of tags below a branch, "<prefix>1", "<prefix>2" and so on. The branch appears
// with its first entry. Holds for one step: the numbers start at 1 with it.
class Entries {
 public:
  Entries(kevaDoc& snapshot, std::initializer_list<std::string_view> names, std::string prefix);

  Tag& add();                       // the next entry, without a value of its own
  Tag& add(const TagValue& value);  // with one

 private:
  kevaDoc& snapshot_;
  std::vector<std::string_view> names_;
  std::string prefix_;
  Tag* branch_ = nullptr;  // null until the first entry
  unsigned count_ = 0;
};

// Sets the attribute, with the property "units" when it has some, unless the value is of kind None.
void setPresent(Tag& target, std::string_view attribute, const TagValue& value,
                const char* units = nullptr);

// A byte count as the text of the property "base-value".
std::string bytesText(std::int64_t bytes);

// The child tag of that name, made when missing, and on `parent` the mark that it says more: an
// empty attribute of its name with the property "complex".
Tag& markedChild(Tag& parent, std::string_view name);
