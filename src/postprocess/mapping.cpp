#include "postprocess/mapping.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace {

std::vector<Item> childrenOf(const Tag* list) {
  std::vector<Item> result;
  if (list == nullptr) return result;
  result.reserve(list->childCount());
  for (const auto& child : list->children()) result.emplace_back(*child);
  return result;
}

TagValue yesOrNo(bool yes) {
  return TagValue(SharedText::lasting(yes ? "1" : "0"));
}

}  // namespace

const SharedText& textOf(const TagValue& value) {
  static const SharedText kEmpty;
  return value.text() == nullptr ? kEmpty : *value.text();
}

const TagValue& Item::value(std::string_view key) const {
  static const TagValue kNone;
  const TagAttribute* attribute = tag_->findAttribute(key);
  return attribute == nullptr ? kNone : std::as_const(*attribute).value();
}

const SharedText& Item::text(std::string_view key) const {
  return textOf(value(key));
}

std::int64_t Item::integer(std::string_view key) const {
  const std::int64_t* number = value(key).integer();
  return number == nullptr ? 0 : *number;
}

std::vector<Item> items(const kevaDoc& raw, std::string_view dataType) {
  const Tag* data = raw.top().findChild(dataType);
  return data == nullptr ? std::vector<Item>() : childrenOf(data->findChild("_items"));
}

std::vector<Item> nestedItems(const Item& item, std::string_view name) {
  return childrenOf(item.child(name));
}

void write(std::span<const Row> rows, const Item& item, Tag& target) {
  for (const Row& row : rows) {
    const TagAttribute* source = nullptr;
    for (const char* key : row.keys) {
      if (key != nullptr && source == nullptr) source = item.tag().findAttribute(key);
    }
    if (source == nullptr && !row.convert.absentToo) continue;
    const TagValue& value = source == nullptr ? TagValue() : source->value();
    target.setAttribute(SharedText::lasting(row.attribute),
                        row.convert.apply(value, row.convert.word));
  }
}

void write(std::span<const Row> rows, std::string_view key, const TagValue& value, Tag& target) {
  for (const Row& row : rows) {
    if (std::ranges::none_of(row.keys, [key](const char* k) { return k != nullptr && k == key; })) {
      continue;
    }
    target.setAttribute(SharedText::lasting(row.attribute),
                        row.convert.apply(value, row.convert.word));
  }
}

void setPresent(Tag& target, std::string_view attribute, const TagValue& value, const char* units) {
  if (value.kind() == TagValue::Kind::None) return;
  target.setAttribute(attribute, value, units == nullptr ? nullptr : "units", units);
}

void copyPresent(const Item& item, std::string_view key, Tag& target, std::string_view attribute) {
  setPresent(target, attribute, item.value(key));
}

namespace conversion {

TagValue copy(const TagValue& source, const char*) {
  return source;
}

TagValue compare(const TagValue& source, const char* word) {
  return yesOrNo(textOf(source) == word);
}

TagValue compareNot(const TagValue& source, const char* word) {
  return yesOrNo(textOf(source) != word);
}

TagValue firstWord(const TagValue& source, const char*) {
  return TagValue(FirstWord(textOf(source)));
}

}  // namespace conversion

Tag& branch(kevaDoc& snapshot, std::span<const std::string_view> names) {
  Tag* tag = &snapshot.top();
  for (const std::string_view name : names) tag = tag->child(name);
  return *tag;
}

Tag& branch(kevaDoc& snapshot, std::initializer_list<std::string_view> names) {
  return branch(snapshot, std::span(names.begin(), names.size()));
}

Entries::Entries(kevaDoc& snapshot, std::initializer_list<std::string_view> names,
                 std::string prefix)
    : snapshot_(snapshot), names_(names), prefix_(std::move(prefix)) {}

Tag& Entries::add() {
  if (branch_ == nullptr) branch_ = &branch(snapshot_, names_);
  return *branch_->child(prefix_ + std::to_string(++count_));
}

Tag& Entries::add(const TagValue& value) {
  Tag& entry = add();
  entry.setValue(value);
  return entry;
}

std::string bytesText(std::int64_t bytes) {
  return std::to_string(bytes);
}

Tag& markedChild(Tag& parent, std::string_view name) {
  parent.setAttribute(name, TagValue(""), "complex", "");
  return *parent.child(name);
}
