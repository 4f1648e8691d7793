#include "keva/tag.h"

#include <algorithm>
#include <utility>

TagAttribute::TagAttribute(std::string_view name, const TagValue& value, const char* propKey,
                           const char* propValue)
    : value_(value), name_(name) {
  if (propKey != nullptr) addProperty(propKey, propValue == nullptr ? "" : propValue);
}

void TagAttribute::addProperty(std::string_view key, std::string_view value) {
  properties_.push_back({std::string(key), std::string(value)});
}

void TagAttribute::setProperty(std::string_view key, std::string_view value) {
  const auto found = std::ranges::find(properties_, key, &TagProperty::key);
  if (found == properties_.end()) {
    addProperty(key, value);
  } else {
    found->value = value;
  }
}

const std::string* TagAttribute::findProperty(std::string_view key) const {
  const auto found = std::ranges::find(properties_, key, &TagProperty::key);
  return found == properties_.end() ? nullptr : &found->value;
}

Tag::Tag(std::string_view name) : name_(name) {}

Tag::Tag(Kind kind, std::string_view firstChildName) : kind_(kind) {
  children_.append(std::make_unique<Tag>(firstChildName));
}

Tag::~Tag() = default;

void Tag::copyFrom(const Tag& other) {
  if (this == &other) return;
  kind_ = other.kind_;
  name_ = other.name_;
  value_ = other.value_ ? std::make_unique<TagValue>(*other.value_) : nullptr;
  properties_ = other.properties_;
  NamedList<TagAttribute> attributes;
  for (const auto& attribute : other.attributes_) {
    attributes.append(std::make_unique<TagAttribute>(*attribute));
  }
  NamedList<Tag> children;
  for (const auto& child : other.children_) {
    auto copy = std::make_unique<Tag>();
    copy->copyFrom(*child);
    children.append(std::move(copy));
  }
  attributes_ = std::move(attributes);
  children_ = std::move(children);  // the last: `other` may be one of the old ones
}

void Tag::setValue(const TagValue& value) {
  value_ = std::make_unique<TagValue>(value);
}

void Tag::becomeBranch() {
  if (kind_ == Kind::Leaf) kind_ = Kind::Branch;
}

Tag* Tag::findChild(std::string_view name) const {
  return children_.find(name);
}

Tag* Tag::child(std::string_view name) {
  if (Tag* found = children_.find(name)) return found;
  becomeBranch();
  return &children_.append(std::make_unique<Tag>(name));
}

Tag* Tag::setChild(std::string_view name, const TagValue& value) {
  Tag* found = child(name);
  found->setValue(value);
  return found;
}

void Tag::addChild(std::unique_ptr<Tag> child) {
  children_.append(std::move(child));
  kind_ = Kind::Branch;
}

Tag* Tag::childAt(std::size_t index) const {
  return children_.at(index);
}

TagAttribute* Tag::findAttribute(std::string_view name) const {
  return attributes_.find(name);
}

TagAttribute* Tag::setAttribute(std::string_view name, const TagValue& value, const char* propKey,
                                const char* propValue) {
  if (TagAttribute* found = attributes_.find(name)) {
    found->value() = value;
    return found;
  }
  return &attributes_.append(std::make_unique<TagAttribute>(name, value, propKey, propValue));
}

TagAttribute* Tag::attributeAt(std::size_t index) const {
  return attributes_.at(index);
}

void Tag::addProperty(std::string_view key, std::string_view value) {
  properties_.push_back({std::string(key), std::string(value)});
}
