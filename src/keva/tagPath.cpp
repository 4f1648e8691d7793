#include <algorithm>
#include <utility>

#include "keva/tag.h"

Tag* Tag::walkPath(std::string_view path, std::string_view& name) {
  if (path.size() > kMaxPathLength) return nullptr;
  if (std::ranges::count(path, '/') > static_cast<std::ptrdiff_t>(kMaxPathDepth)) return nullptr;
  Tag* tag = this;
  for (;;) {
    if (path.starts_with('/')) {
      path.remove_prefix(1);
      tag = tag->childAt(0);
      if (tag == nullptr) return nullptr;
      continue;
    }
    const std::size_t slash = path.find('/');
    if (slash == std::string_view::npos) break;
    tag = tag->child(path.substr(0, slash));
    path.remove_prefix(slash + 1);
  }
  name = path;
  return tag;
}

TagAttribute* Tag::setPath(std::string_view path, TagValue value, const char* propKey,
                           const char* propValue) {
  std::string_view name;
  Tag* tag = walkPath(path, name);
  if (tag == nullptr) return nullptr;
  TagAttribute* found = tag->findAttribute(name);
  if (found == nullptr) return tag->setAttribute(name, std::move(value), propKey, propValue);
  found->value() = std::move(value);
  if (propKey != nullptr && propValue != nullptr) found->setProperty(propKey, propValue);
  return found;
}

void Tag::addPropertyAt(std::string_view path, std::string_view key, std::string_view value) {
  Tag* tag = this;
  while (tag != nullptr) {
    if (path.starts_with('/')) {
      path.remove_prefix(1);
      tag = tag->childAt(0);
      continue;
    }
    const std::size_t slash = path.find('/');
    if (slash == std::string_view::npos) {
      if (Tag* named = tag->findChild(path)) named->addProperty(key, value);
      return;
    }
    tag->becomeBranch();
    tag = tag->findChild(path.substr(0, slash));
    path.remove_prefix(slash);  // the "/" stays in front and skips a level on the next round
  }
}
