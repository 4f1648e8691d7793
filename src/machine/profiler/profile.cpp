#include "machine/profiler/profile.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace machine {

namespace {

enum class TagKind { Open, Close, Empty };

struct Tag {
  TagKind kind;
  std::string_view name;
  std::size_t start;  // of its "<" in the document
  std::size_t end;    // behind its ">"
};

// Goes from tag to tag of an XML document; what is no tag, and what stands within comments and the
// like, is passed over. Nothing is checked: an item that is asked for goes through the host's
// parser.
class Scanner {
 public:
  explicit Scanner(std::string_view document) : document_(document) {}

  // The next tag; nothing at the end of the document, also where that is within a tag.
  std::optional<Tag> next() {
    while (findMark()) {
      const std::size_t start = at_;
      if (passRemark()) continue;
      at_ = tagEnd(start + 1);
      if (at_ != kEnd) return tag(start, at_);
    }
    return std::nullopt;
  }

  // Passes over the rest of an element that was opened. False when the document ends within it.
  // Nearly all of a document is passed over by this loop.
  bool pass(const Tag& opened) {
    if (opened.kind != TagKind::Open) return true;
    for (std::size_t depth = 1; findMark();) {
      if (document_[std::min(at_ + 1, document_.size() - 1)] == '/') {
        if (--depth > 0) {
          at_ += 2;
          continue;
        }
        at_ = tagEnd(at_ + 1);
        return at_ != kEnd;
      }
      if (passRemark()) continue;
      at_ = tagEnd(at_ + 1);
      if (at_ != kEnd && document_[at_ - 2] != '/') ++depth;
    }
    return false;
  }

  // The same, and the whole element.
  std::optional<std::string_view> element(const Tag& opened) {
    if (!pass(opened)) return std::nullopt;
    return document_.substr(opened.start, at_ - opened.start);
  }

  // The same, and what stands between its tags.
  std::optional<std::string_view> content(const Tag& opened) {
    const std::optional<std::string_view> whole = element(opened);
    if (!whole || opened.kind == TagKind::Empty)
      return whole ? std::optional(std::string_view()) : std::nullopt;
    const std::size_t front = opened.end - opened.start;
    return whole->substr(front, whole->rfind('<') - front);
  }

 private:
  static constexpr std::size_t kEnd = std::string_view::npos;

  // Goes to the next "<"; false when there is none.
  bool findMark() {
    at_ = document_.find('<', at_);
    return at_ != kEnd;
  }

  // Passes over what begins at a "<" and is no tag: comments, CDATA, processing instructions,
  // document types. False when it is one.
  bool passRemark() {
    const char kind = at_ + 1 < document_.size() ? document_[at_ + 1] : '>';
    if (kind != '!' && kind != '?') return false;
    const std::string_view rest = document_.substr(at_);
    if (rest.starts_with("<!--")) {
      passTo("-->", 4);
    } else if (rest.starts_with("<![CDATA[")) {
      passTo("]]>", 9);
    } else if (kind == '?') {
      passTo("?>", 2);
    } else {
      at_ = tagEnd(at_ + 1);
    }
    return true;
  }

  void passTo(std::string_view mark, std::size_t from) {
    const std::size_t found = document_.find(mark, at_ + from);
    at_ = found == kEnd ? kEnd : found + mark.size();
  }

  // Behind the ">" that ends what was begun; those in quotes, and in the brackets of a document
  // type, do not.
  std::size_t tagEnd(std::size_t from) const {
    char quote = '\0';
    bool bracket = false;
    for (std::size_t i = from; i < document_.size(); ++i) {
      const char c = document_[i];
      if (c > '>' && c != '[' && c != ']') continue;  // the letters of names
      if (quote != '\0') {
        if (c == quote) quote = '\0';
      } else if (c == '"' || c == '\'') {
        quote = c;
      } else if (c == '[' || c == ']') {
        bracket = c == '[';
      } else if (c == '>' && !bracket) {
        return i + 1;
      }
    }
    return kEnd;
  }

  Tag tag(std::size_t start, std::size_t end) const {
    constexpr std::string_view kBlanks = " \t\r\n";
    std::string_view inner = document_.substr(start + 1, end - start - 2);
    TagKind kind = TagKind::Open;
    if (inner.starts_with('/')) {
      kind = TagKind::Close;
      inner.remove_prefix(1);
    } else if (inner.ends_with('/')) {
      kind = TagKind::Empty;
      inner.remove_suffix(1);
    }
    return {kind, inner.substr(0, inner.find_first_of(kBlanks)), start, end};
  }

  std::string_view document_;
  std::size_t at_ = 0;  // npos at the end
};

using Slices = std::vector<std::string_view>;

// Each of these reads on from the tag that opened an element to the one that ends it, or to the end
// of the document; what is whole until then is kept.

void readItems(Scanner& scanner, const Tag& opened, Slices& items) {
  if (opened.kind == TagKind::Empty) return;
  while (const std::optional<Tag> tag = scanner.next()) {
    if (tag->kind == TagKind::Close) return;
    if (const auto item = scanner.element(*tag)) items.push_back(*item);
  }
}

struct DataType {
  std::string_view name;  // "" when it has none
  Slices items;
};

DataType readDataType(Scanner& scanner) {
  DataType type;
  std::string_view key;
  while (const std::optional<Tag> tag = scanner.next()) {
    if (tag->kind == TagKind::Close) break;
    if (tag->name == "key") {
      key = scanner.content(*tag).value_or("");
    } else if (key == "_dataType" && tag->name == "string") {
      type.name = scanner.content(*tag).value_or(type.name);
    } else if (key == "_items" && tag->name == "array") {
      readItems(scanner, *tag, type.items);
    } else {
      scanner.pass(*tag);
    }
  }
  return type;
}

}  // namespace

huxread::Result<Profile> Profile::open(std::string_view document, platform::Host& host) {
  Scanner scanner(document);
  std::optional<Tag> root = scanner.next();
  if (root && root->name == "plist") root = scanner.next();
  if (!root || root->name != "array" || root->kind == TagKind::Close) {
    return huxread::Error{"the profiler's document is no property list with an array"};
  }
  Profile profile(host);
  if (root->kind == TagKind::Empty) return profile;
  while (true) {
    const std::optional<Tag> tag = scanner.next();
    profile.cutOff_ = !tag;
    if (!tag || tag->kind == TagKind::Close) return profile;
    if (tag->kind == TagKind::Open && tag->name == "dict") {
      const DataType type = readDataType(scanner);
      if (type.name.empty()) continue;
      Items& items = profile.items_[std::string(type.name)];
      items.insert(items.end(), type.items.begin(), type.items.end());
    } else {
      scanner.pass(*tag);
    }
  }
}

bool Profile::has(std::string_view dataType) const {
  return items_.find(dataType) != items_.end();
}

std::vector<std::string> Profile::dataTypes() const {
  std::vector<std::string> names;
  for (const auto& [name, items] : items_) names.push_back(name);
  return names;
}

void Profile::forEach(std::string_view dataType,
                      const std::function<void(const platform::PropertyList&)>& take) const {
  const auto found = items_.find(dataType);
  if (found == items_.end()) return;
  std::string document;
  for (const std::string_view item : found->second) {
    document = "<plist version=\"1.0\">";
    document += item;
    document += "</plist>";
    const std::optional<platform::PropertyList> parsed = host_->parsePropertyList(document);
    if (parsed && parsed->dictionary() != nullptr) {
      take(*parsed);
    } else {
      ++unreadable_;
    }
  }
}

}  // namespace machine
