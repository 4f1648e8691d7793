#include "huxread/document.h"

#include <algorithm>
#include <utility>

#include "base/formatString.h"

namespace huxread {

namespace {

// The "=" that ends the name of a tag's line; npos when there is none. The names that are made from
// outside texts are PREFIX:VALUE or PREFIX:VALUE VERSION, so of several "=" it is the one where
// this comes out.
std::size_t endOfName(std::string_view line) {
  constexpr int kMaxTries = 64;  // each as long as the line

  const std::size_t first = line.find('=');
  if (first == std::string_view::npos) return first;
  const std::size_t colon = line.find(':');
  if (colon > first) return first;
  const std::size_t start = line.find_first_not_of(' ', colon + 1);
  std::size_t at = line.find('=', first + 1);
  for (int tries = 0; at != std::string_view::npos && tries < kMaxTries;
       at = line.find('=', at + 1)) {
    const std::string_view value = line.substr(at + 1);
    if (value.empty()) break;
    if (at < start || at - start < value.size()) continue;
    const std::string_view name = line.substr(start, at - start);
    if (name.starts_with(value) && (name.size() == value.size() || name[value.size()] == ' ')) {
      return at;
    }
    ++tries;
  }
  return first;
}

// The first of these that has the name or key.
template <typename Entry>
std::optional<std::string_view> valueOf(std::span<const Entry> entries,
                                        std::string_view Entry::*name, std::string_view wanted) {
  const auto found = std::ranges::find(entries, wanted, name);
  if (found == entries.end()) return std::nullopt;
  return found->value;
}

}  // namespace

// Reads the lines one after the other. The lines are counted first, so that nothing moves and no
// room is wasted while they are taken in.
class Document::Parser {
 public:
  explicit Parser(Document& document) : document_(document), rest_(*document.text_) {}

  // What is wrong with the first line that cannot be read; null when all were. What stands before
  // it is in the document.
  const char* run() {
    if (!rest_.starts_with(kFirstLine)) return "does not begin a document";
    rest_.remove_prefix(kFirstLine.size());
    if (const char* problem = reserve()) return problem;
    for (line_ = 2; !rest_.empty(); ++line_) {
      const std::size_t end = rest_.find('\n');
      if (end == std::string_view::npos) return "is cut off";
      if (const char* problem = take(rest_.substr(0, end))) return problem;
      rest_.remove_prefix(end + 1);
    }
    return open_.empty() ? nullptr : "is missing: a branch is not ended";
  }

  std::size_t line() const { return line_; }

 private:
  const char* reserve() {
    std::size_t lines = 0;
    std::size_t tags = 0;
    std::size_t properties = 0;
    std::size_t ends = 0;
    for (std::size_t start = 0, end = 0; start < rest_.size(); start = end + 1, ++lines) {
      end = rest_.find('\n', start);
      if (end == std::string_view::npos) break;
      const char mark = rest_[start];
      if (mark == '*' || mark == '+') ++tags;
      if (mark == '~') ++properties;
      if (mark == '-') ++ends;
    }
    if (lines > kMaxLines) return "begins more lines than can be read";
    document_.tags_.reserve(tags);
    document_.properties_.reserve(properties);
    document_.attributes_.reserve(lines - tags - properties - ends);
    return nullptr;
  }

  const char* take(std::string_view line) {
    if (line == "-") return end();
    const char mark = line.empty() ? '\0' : line.front();
    if (mark == '*' || mark == '+') return takeTag(line.substr(1), mark == '+');
    const bool isProperty = mark == '~';
    if (isProperty) line.remove_prefix(1);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || mark == '-') return "is no entry";
    if (!inTag_) return "belongs to no tag";
    const std::string_view name = line.substr(0, equals);
    const std::string_view value = line.substr(equals + 1);
    Tag& tag = document_.tags_.back();
    if (!isProperty) {
      ++tag.attributeCount;
      document_.attributes_.push_back({name, value, {}});
      return nullptr;
    }
    const Property& added = document_.properties_.emplace_back(Property{name, value});
    if (tag.attributeCount == 0) {
      ++tag.propertyCount;
    } else {
      auto& properties = document_.attributes_.back().properties;
      properties = {properties.empty() ? &added : properties.data(), properties.size() + 1};
    }
    return nullptr;
  }

  const char* takeTag(std::string_view line, bool branch) {
    const std::size_t equals = endOfName(line);
    if (equals == std::string_view::npos) return "is no entry";
    if (branch && open_.size() == kMaxDepth) return "begins a branch in too many others";
    const auto index = static_cast<std::uint32_t>(document_.tags_.size());
    if (previous_ != kNone) {
      document_.tags_[previous_].nextSibling = index;
    } else if (!open_.empty()) {
      document_.tags_[open_.back()].firstChild = index;
    }
    document_.tags_.push_back({line.substr(0, equals), line.substr(equals + 1),
                               static_cast<std::uint32_t>(document_.attributes_.size()), 0,
                               static_cast<std::uint32_t>(document_.properties_.size()), 0, kNone,
                               kNone});
    inTag_ = true;
    previous_ = index;
    if (branch) {
      open_.push_back(index);
      previous_ = kNone;
    }
    return nullptr;
  }

  const char* end() {
    if (open_.empty()) return "ends a branch, and none is open";
    previous_ = open_.back();
    open_.pop_back();
    inTag_ = false;
    return nullptr;
  }

  Document& document_;
  std::string_view rest_;
  std::size_t line_ = 1;
  std::vector<std::uint32_t> open_;  // the branches around the next line
  std::uint32_t previous_ = kNone;   // the tag before it within the innermost one
  bool inTag_ = false;               // whether an attribute may stand there
};

Document::Document(std::string text)
    : text_(std::make_unique<const std::string>(std::move(text))) {}

Result<Document> Document::parse(std::string text) {
  Document document(std::move(text));
  Parser parser(document);
  const char* problem = parser.run();
  if (problem != nullptr) return Error{formatString("line %zu %s", parser.line(), problem)};
  return document;
}

Document Document::salvage(std::string text, std::size_t& line) {
  Document document(std::move(text));
  Parser parser(document);
  line = parser.run() == nullptr ? 0 : parser.line();
  return document;
}

std::optional<TagView> Document::top() const {
  return view(tags_.empty() ? kNone : 0);
}

std::optional<TagView> Document::view(std::uint32_t index) const {
  if (index == kNone) return std::nullopt;
  return TagView(*this, index);
}

std::optional<std::string_view> Attribute::property(std::string_view key) const {
  return valueOf(properties, &Property::key, key);
}

std::string_view TagView::name() const {
  return document_->tags_[index_].name;
}

std::string_view TagView::value() const {
  return document_->tags_[index_].value;
}

std::span<const Attribute> TagView::attributes() const {
  const Document::Tag& tag = document_->tags_[index_];
  return std::span(document_->attributes_).subspan(tag.firstAttribute, tag.attributeCount);
}

std::span<const Property> TagView::properties() const {
  const Document::Tag& tag = document_->tags_[index_];
  return std::span(document_->properties_).subspan(tag.firstProperty, tag.propertyCount);
}

std::optional<std::string_view> TagView::attribute(std::string_view name) const {
  return valueOf(attributes(), &Attribute::name, name);
}

std::optional<std::string_view> TagView::property(std::string_view key) const {
  return valueOf(properties(), &Property::key, key);
}

std::optional<TagView> TagView::firstChild() const {
  return document_->view(document_->tags_[index_].firstChild);
}

std::optional<TagView> TagView::nextSibling() const {
  return document_->view(document_->tags_[index_].nextSibling);
}

std::optional<TagView> TagView::child(std::string_view name) const {
  std::optional<TagView> child = firstChild();
  while (child && child->name() != name) child = child->nextSibling();
  return child;
}

}  // namespace huxread
