#include "keva/tag.h"

#include <algorithm>
#include <utility>

TagProperties& TagProperties::operator=(const TagProperties& other) {
  list_ = other.list_ ? std::make_unique<std::vector<TagProperty>>(*other.list_) : nullptr;
  return *this;
}

const std::vector<TagProperty>& TagProperties::list() const {
  static const std::vector<TagProperty> kNone;
  return list_ ? *list_ : kNone;
}

void TagProperties::add(std::string_view key, std::string_view value) {
  if (!list_) list_ = std::make_unique<std::vector<TagProperty>>();
  list_->push_back({std::string(key), std::string(value)});
}

TagProperty* TagProperties::find(std::string_view key) const {
  if (!list_) return nullptr;
  const auto found = std::ranges::find(*list_, key, &TagProperty::key);
  return found == list_->end() ? nullptr : &*found;
}

TagAttribute::TagAttribute(SharedText name, TagValue&& value, const char* propKey,
                           const char* propValue)
    : value_(std::move(value)), name_(std::move(name)) {
  if (propKey != nullptr) addProperty(propKey, propValue == nullptr ? "" : propValue);
}

void TagAttribute::addProperty(std::string_view key, std::string_view value) {
  properties_.add(key, value);
}

void TagAttribute::setProperty(std::string_view key, std::string_view value) {
  if (TagProperty* found = properties_.find(key)) {
    found->value = value;
  } else {
    properties_.add(key, value);
  }
}

const std::string* TagAttribute::findProperty(std::string_view key) const {
  const TagProperty* found = properties_.find(key);
  return found == nullptr ? nullptr : &found->value;
}

Tag::Tag(std::string_view name) : Tag(SharedText(name)) {}

Tag::Tag(SharedText name) : name_(std::move(name)) {}

Tag::Tag(Kind kind, std::string_view firstChildName) : kind_(kind) {
  children_.append(firstChildName);
}

Tag::Tag(Tag&&) noexcept = default;

Tag::~Tag() = default;

void Tag::copyFrom(const Tag& other) {
  if (this == &other) return;
  kind_ = other.kind_;
  name_ = other.name_;
  value_ = other.value_ ? std::make_unique<TagValue>(*other.value_) : nullptr;
  properties_ = other.properties_;
  NamedList<TagAttribute> attributes;
  for (const auto& attribute : other.attributes_) {
    attributes.append(*attribute);
  }
  NamedList<Tag> children;
  for (const auto& child : other.children_) {
    Tag copy;
    copy.copyFrom(*child);
    children.append(std::move(copy));
  }
  attributes_ = std::move(attributes);
  children_ = std::move(children);  // the last: `other` may be one of the old ones
}

void Tag::setValue(TagValue value) {
  value_ = std::make_unique<TagValue>(std::move(value));
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
  return &children_.append(name);
}

Tag* Tag::child(const SharedText& name) {
  if (Tag* found = children_.find(name)) return found;
  becomeBranch();
  return &children_.append(name);
}

Tag* Tag::setChild(std::string_view name, TagValue value) {
  Tag* found = child(name);
  found->setValue(std::move(value));
  return found;
}

Tag* Tag::setChild(const SharedText& name, TagValue value) {
  Tag* found = child(name);
  found->setValue(std::move(value));
  return found;
}

Tag* Tag::addChild(Tag child) {
  kind_ = Kind::Branch;
  return &children_.append(std::move(child));
}

Tag* Tag::childAt(std::size_t index) const {
  return children_.at(index);
}

TagAttribute* Tag::findAttribute(std::string_view name) const {
  return attributes_.find(name);
}

TagAttribute* Tag::setAttribute(std::string_view name, TagValue value, const char* propKey,
                                const char* propValue) {
  if (TagAttribute* found = attributes_.find(name)) {
    found->value() = std::move(value);
    return found;
  }
  return &attributes_.append(SharedText(name), std::move(value), propKey, propValue);
}

TagAttribute* Tag::setAttribute(const SharedText& name, TagValue&& value) {
  if (TagAttribute* found = attributes_.find(name)) {
    found->value() = std::move(value);
    return found;
  }
  return &attributes_.append(name, std::move(value), nullptr, nullptr);
}

void Tag::addAttribute(const SharedText& name, TagValue&& value) {
  attributes_.append(name, std::move(value), nullptr, nullptr);
}

TagAttribute* Tag::attributeAt(std::size_t index) const {
  return attributes_.at(index);
}

void Tag::addProperty(std::string_view key, std::string_view value) {
  properties_.add(key, value);
}
