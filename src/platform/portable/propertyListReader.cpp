#include "platform/portable/propertyListReader.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iterator>
#include <pugixml.hpp>
#include <string>
#include <unordered_map>
#include <utility>

#include "base/digits.h"
#include "platform/host.h"
#include "platform/portable/calendar.h"
#include "platform/portable/xmlScan.h"

namespace platform {

namespace {

using Value = std::optional<PropertyList>;  // nothing: the document is refused

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
}

// Decimal or hexadecimal ("0x"), with a sign, blanks before it but nothing behind. From 2^63 to
// 2^64 - 1 it wraps, as the platform's does when it is read.
Value readInteger(std::string_view text) {
  while (!text.empty() && isBlank(text.substr(0, 1))) text.remove_prefix(1);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  const char* end = text.data() + text.size();
  std::uint64_t magnitude = 0;
  const auto [last, error] = std::from_chars(text.data(), end, magnitude, hexadecimal ? 16 : 10);
  if (error != std::errc() || last != end) return std::nullopt;
  if (negative && magnitude > std::uint64_t{1} << 63) return std::nullopt;
  const auto integer = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
  const NumberType type = integer == 0 ? NumberType::SInt32 : NumberType::SInt64;
  return PropertyList(PropertyList::Number{type, integer});
}

Value readReal(const std::string& text) {
  char* last = nullptr;
  const double real = std::strtod(text.c_str(), &last);
  if (text.empty() || last != text.c_str() + text.size()) return std::nullopt;
  return PropertyList(PropertyList::Number{NumberType::Float64, 0, real});
}

Value readDate(std::string_view text) {
  constexpr std::string_view kShape = "0000-00-00T00:00:00Z";
  if (!hasShape(text, kShape)) return std::nullopt;
  int fields[6] = {};
  int* field = fields;
  for (const char c : text) {
    if (isDigit(c)) {
      *field = *field * 10 + (c - '0');
    } else {
      ++field;
    }
  }
  const auto [year, month, day, hour, minute, second] = fields;
  return PropertyList(
      PropertyList::Date{secondsSince2001({year, month, day, hour, minute, second})});
}

// Collects a dictionary's entries: of equal keys the last value, in the place of the first.
class DictionaryBuilder {
 public:
  explicit DictionaryBuilder(std::size_t entries) { entries_.reserve(entries); }

  void put(SharedText&& key, PropertyList&& value) {
    const std::size_t place = placeOf(key);
    if (place < entries_.size()) {
      entries_[place].second = std::move(value);
      return;
    }
    entries_.emplace_back(std::move(key), std::move(value));
    if (!places_.empty()) places_.emplace(entries_.back().first, place);
  }

  PropertyList::Dictionary take() { return std::move(entries_); }

 private:
  static constexpr std::size_t kSearched = 16;  // up to so many keys a walk is faster than a map

  std::size_t placeOf(std::string_view key) {
    if (entries_.size() <= kSearched) {
      const auto found =
          std::ranges::find(entries_, key, &PropertyList::Dictionary::value_type::first);
      return static_cast<std::size_t>(found - entries_.begin());
    }
    if (places_.empty()) {
      for (std::size_t i = 0; i < entries_.size(); ++i) places_.emplace(entries_[i].first, i);
    }
    const auto found = places_.find(key);
    return found == places_.end() ? entries_.size() : found->second;
  }

  PropertyList::Dictionary entries_;
  std::unordered_map<std::string_view, std::size_t> places_;  // keys are those of the entries
};

// The elements within a container, passed to `take` one by one; false when there is a text between
// them or `take` refuses one.
template <typename Take>
bool forEachElement(const pugi::xml_node& container, const Take& take) {
  if (!isBlank(container.value())) return false;
  for (const pugi::xml_node& part : container) {
    switch (part.type()) {
      case pugi::node_element:
        if (!take(part)) return false;
        break;
      case pugi::node_pcdata:
        if (!isBlank(part.value())) return false;
        break;
      case pugi::node_cdata:
        return false;
      default:  // comments and processing instructions say nothing
        break;
    }
  }
  return true;
}

// Makes values of elements. Their texts share the bytes of the document, in which the parser left
// them.
class Reader {
 public:
  explicit Reader(SharedText document) : document_(std::move(document)) {}

  // `depth`: how many arrays and dictionaries the element stands in.
  Value read(const pugi::xml_node& element, int depth) const {
    const std::string_view name = element.name();
    if (name == "string") {
      std::optional<SharedText> text = textOf(element);
      return text ? Value(std::move(*text)) : std::nullopt;
    }
    if (name == "dict" || name == "array") {
      if (depth == Host::kMaxNesting) return std::nullopt;
      return name == "dict" ? readDictionary(element, depth + 1) : readArray(element, depth + 1);
    }
    if (name == "true" || name == "false") {
      if (element.first_child() || *element.value() != '\0') return std::nullopt;
      return PropertyList(name == "true");
    }
    const std::optional<SharedText> text = textOf(element);
    if (!text) return std::nullopt;
    if (name == "integer") return readInteger(*text);
    if (name == "real") return readReal(*text);
    if (name == "date") return readDate(*text);
    if (name == "data") return PropertyList(PropertyList::Data{});
    return std::nullopt;
  }

 private:
  // The element's text, CDATA included; nothing when anything else stands in it, a comment too.
  std::optional<SharedText> textOf(const pugi::xml_node& element) const {
    if (!element.first_child()) return document_.part(element.value());
    std::string text = element.value();  // what stands before the first node within
    for (const pugi::xml_node& part : element) {
      if (part.type() != pugi::node_pcdata && part.type() != pugi::node_cdata) return std::nullopt;
      text += part.value();
    }
    return SharedText(std::move(text));
  }

  Value readArray(const pugi::xml_node& element, int depth) const {
    PropertyList::Array array;
    const bool valid = forEachElement(element, [&](const pugi::xml_node& child) {
      Value value = read(child, depth);
      if (!value) return false;
      array.push_back(std::move(*value));
      return true;
    });
    if (!valid) return std::nullopt;
    return PropertyList(std::move(array));
  }

  Value readDictionary(const pugi::xml_node& element, int depth) const {
    // As large as it must be: most of a document is small dictionaries.
    const auto keysAndValues = std::distance(element.begin(), element.end());
    DictionaryBuilder dictionary(static_cast<std::size_t>(keysAndValues) / 2);
    std::optional<SharedText> key;
    const bool valid = forEachElement(element, [&](const pugi::xml_node& child) {
      if (!key) {
        if (std::string_view(child.name()) == "key") key = textOf(child);
        return key.has_value();
      }
      Value value = read(child, depth);
      if (!value) return false;
      dictionary.put(std::move(*key), std::move(*value));
      key.reset();
      return true;
    });
    if (!valid || key) return std::nullopt;
    return PropertyList(dictionary.take());
  }

  SharedText document_;
};

// The one value of the document, which stands in <plist> or alone.
pugi::xml_node rootElement(const pugi::xml_document& tree) {
  pugi::xml_node root;
  forEachElement(tree, [&](const pugi::xml_node& element) {
    root = element;
    return false;
  });
  if (std::string_view(root.name()) != "plist") return root;
  pugi::xml_node only;
  const bool valid = forEachElement(root, [&](const pugi::xml_node& element) {
    const bool first = !only;
    only = element;
    return first;
  });
  return valid ? only : pugi::xml_node();
}

}  // namespace

std::optional<PropertyList> readPropertyList(std::string document) {
  const std::optional<XmlScan> xml = scanXml(document);
  if (!xml || xml->length == 0) return std::nullopt;
  // No normalisation of line ends: texts keep their bytes, as on the Mac. Comments are kept because
  // one within a text refuses the document, text outside the root because some before it does.
  // Texts are kept as values of their elements: a node for each would double the tree.
  constexpr unsigned kFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_embed_pcdata |
                              pugi::parse_comments | pugi::parse_pi | pugi::parse_fragment;
  // Blanks count where they are a whole text, or a part of one beside CDATA.
  const unsigned blanks = xml->hasCdata ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single;
  document.resize(xml->length);
  SharedText bytes(std::move(document));
  pugi::xml_document tree;  // its names and texts stay where they are in the document
  // The zero behind the document counts: the parser puts one over the last character.
  if (!tree.load_buffer_inplace(bytes.bytes(), bytes.size() + 1, kFlags | blanks,
                                pugi::encoding_utf8)) {
    return std::nullopt;
  }
  const pugi::xml_node root = rootElement(tree);
  if (!root) return std::nullopt;
  return Reader(std::move(bytes)).read(root, 0);
}

}  // namespace platform
