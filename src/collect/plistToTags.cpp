#include "collect/plistToTags.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

#include "base/digits.h"
#include "base/formatString.h"
#include "collect/dates.h"

using platform::NumberType;
using platform::PropertyList;

namespace {

enum class Level { Top, Nested };  // direct key of a data type, or below

TagValue numberValue(const PropertyList::Number& number, Level level) {
  switch (number.type) {
    case NumberType::SInt8:
      return TagValue(std::int64_t{static_cast<std::uint8_t>(number.integer)});
    case NumberType::SInt16:
      return TagValue(std::int64_t{static_cast<std::uint16_t>(number.integer)});
    case NumberType::SInt32:
      // Read into a 32-bit slot of which the upper half of the stored number knows nothing: -1 is
      // stored as 4294967295.
      return TagValue(std::int64_t{static_cast<std::uint32_t>(number.integer)});
    case NumberType::Char:
    case NumberType::Short:
    case NumberType::Int:
    case NumberType::Long:
    case NumberType::CFIndex:
    case NumberType::NSInteger:
      return TagValue(std::int64_t{static_cast<std::int32_t>(number.integer)});
    case NumberType::SInt64:
    case NumberType::LongLong:
      if (level == Level::Top) {
        return TagValue(formatString("%lld", static_cast<long long>(number.integer)));
      }
      return TagValue(number.integer);
    case NumberType::Float32:
    case NumberType::Float64:
    case NumberType::Float:
    case NumberType::Double:
      return TagValue(number.real);
    case NumberType::CGFloat:
      break;
  }
  return TagValue();
}

// Letters, digits and "_".
constexpr auto kPlain = [] {
  std::array<bool, 256> plain{};
  for (const char c :
       std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_")) {
    plain[static_cast<unsigned char>(c)] = true;
  }
  return plain;
}();

bool isPlain(char c) {
  return kPlain[static_cast<unsigned char>(c)];
}

// A place in the document. Its tags are made when the first value is set below it: arrays and
// dictionaries without content leave no trace.
class Place {
 public:
  // Where `path` leads, which is to be continued by "/" and a name.
  Place(kevaDoc& document, SharedText path)
      : document_(&document), length_(path.size()), name_(std::move(path)) {}

  enum class Names { Any, New };  // New: no sibling in the profiler's list has that name

  // The parent must outlive this object, and is not changed otherwise meanwhile.
  Place(Place& parent, SharedText name, Names names = Names::Any)
      : parent_(&parent),
        names_(names),
        length_(parent.length_ + 1 + name.size()),
        name_(std::move(name)) {}

  // So many attributes are likely to be set directly below, at most.
  void expect(std::size_t attributes) { expected_ = attributes; }

  // As the attribute that the path names.
  void set(TagValue&& value) {
    if (length_ > Tag::kMaxPathLength) return;  // as deep as a path may be is no property list
    Tag* tag = parent_->tag();
    if (tag == nullptr) return;
    if (isNewAmong(tag->attributeCount(), parent_->attributes_)) {
      tag->addAttribute(name_, std::move(value));
    } else {
      tag->setAttribute(name_, std::move(value));
    }
  }

 private:
  // As Tag::setPath walks a path; null where it ends.
  Tag* tag() {
    if (tag_ == nullptr) tag_ = findTag();
    return tag_;
  }

  Tag* findTag() {
    if (parent_ == nullptr) {
      std::string_view rest;
      return document_->holder().walkPath(std::string(name_) + "/", rest);
    }
    Tag* above = parent_->tag();
    if (above == nullptr) return nullptr;
    Tag* found = name_.empty() ? above->childAt(0) : childOf(*above);
    if (found != nullptr) found->expectAttributes(expected_);
    return found;
  }

  Tag* childOf(Tag& above) {
    return isNewAmong(above.childCount(), parent_->children_) ? above.addChild(Tag(name_))
                                                              : above.child(name_);
  }

  // Whether the name need not be looked for among so many, which are then one more: all of them
  // were `added` in the same way. So a list of 100,000 items is not searched for each of them.
  bool isNewAmong(std::size_t count, std::size_t& added) const {
    if (names_ == Names::Any || count != added) return false;
    ++added;
    return true;
  }

  kevaDoc* document_ = nullptr;  // of a place without a parent, whose name is a path
  Place* parent_ = nullptr;
  Tag* tag_ = nullptr;  // null until it is known
  Names names_ = Names::Any;
  std::size_t children_ = 0;    // of its tag that were added without a look at the others
  std::size_t attributes_ = 0;  // the same of these
  std::size_t length_;
  std::size_t expected_ = 0;
  SharedText name_;
};

class Converter {
 public:
  explicit Converter(platform::Host& host) : host_(host) {}

  void dataType(PropertyList::Dictionary& dictionary, Place& place) {
    constexpr std::array<std::string_view, 3> kSkipped = {"_dataType", "_detailLevel",
                                                          "_properties"};
    for (auto& [key, value] : dictionary) {
      if (std::ranges::find(kSkipped, key) != kSkipped.end()) continue;
      Place below(place, sanitizeKey(std::move(key)));
      convert(value, below, Level::Top);
    }
  }

  void dictionary(PropertyList::Dictionary& dictionary, Place& place) {
    place.expect(dictionary.size());
    auto names = Place::Names::New;  // until a key is changed, which may make it that of another
    for (auto& [key, value] : dictionary) {
      const bool rules = key == "spfirewall_applications" || key == "spfirewall_services";
      SharedText name = sanitizeKey(key);
      if (name != key) names = Place::Names::Any;
      Place below(place, std::move(name), names);
      if (rules && value.dictionary() != nullptr) {
        namedValues(*value.dictionary(), below);
      } else {
        convert(value, below, Level::Nested);
      }
    }
  }

  void array(PropertyList::Array& array, Place& place) {
    if (!array.empty() && array.front().text() != nullptr) place.expect(array.size());
    for (std::size_t i = 0; i < array.size(); ++i) {
      PropertyList element = std::exchange(array[i], PropertyList::Data{});  // and goes
      Place item(place, itemName(i), Place::Names::New);
      convert(element, item, Level::Nested);
    }
  }

  void namedValues(PropertyList::Dictionary& dictionary, Place& place) {
    std::size_t position = 0;
    for (auto& [key, value] : dictionary) {
      Place item(place, itemName(position++), Place::Names::New);
      if (value.text() == nullptr) continue;
      Place(item, SharedText("_name")).set(TagValue(std::move(key)));
      Place(item, SharedText("value")).set(TagValue(std::move(*value.text())));
    }
  }

 private:
  SharedText itemName(std::size_t position) {
    constexpr std::size_t kShared = 64;  // most arrays are short
    if (position >= kShared) return SharedText("item" + std::to_string(position));
    while (itemNames_.size() <= position) {
      itemNames_.emplace_back("item" + std::to_string(itemNames_.size()));
    }
    return itemNames_[position];
  }

  void convert(PropertyList& value, Place& place, Level level) {
    if (value.text() != nullptr) {
      place.set(TagValue(std::move(*value.text())));
    } else if (value.dictionary() != nullptr) {
      dictionary(*value.dictionary(), place);
    } else if (value.array() != nullptr) {
      array(*value.array(), place);
    } else if (value.date() != nullptr) {
      place.set(TagValue(formatDate(host_, value.date()->seconds, TimestampForm::Long)));
    } else if (value.number() != nullptr) {
      TagValue number = numberValue(*value.number(), level);
      if (number.kind() != TagValue::Kind::None) place.set(std::move(number));
    }
  }

  platform::Host& host_;
  std::vector<SharedText> itemNames_;  // the first ones of all arrays
};

}  // namespace

void convertProfile(platform::Host& host, PropertyList root, kevaDoc& document) {
  if (root.array() == nullptr) return;
  Converter converter(host);
  for (PropertyList& element : *root.array()) {
    const PropertyList* dataType = element.find("_dataType");
    if (dataType == nullptr || dataType->text() == nullptr) continue;
    if (*dataType->text() == "SPLogsDataType" || *dataType->text() == "SPFontsDataType") continue;
    Place place(document, SharedText("/" + std::string(normalizedText(*dataType->text()))));
    converter.dataType(*element.dictionary(), place);
  }
}

void convertDictionary(platform::Host& host, PropertyList::Dictionary dictionary,
                       const std::string& path, kevaDoc& document) {
  Place place(document, SharedText(path));
  Converter(host).dictionary(dictionary, place);
}

void convertArray(platform::Host& host, PropertyList::Array array, const std::string& path,
                  kevaDoc& document) {
  Place place(document, SharedText(path));
  Converter(host).array(array, place);
}

void convertNamedValues(platform::Host& host, PropertyList::Dictionary dictionary,
                        const std::string& path, kevaDoc& document) {
  Place place(document, SharedText(path));
  Converter(host).namedValues(dictionary, place);
}

SharedText sanitizeKey(SharedText key) {
  // Keys of the profiler are plain ones, but for a few: they stay where they are.
  if (std::ranges::all_of(key, isPlain)) return key;
  std::string sanitized = key;
  std::ranges::replace_if(
      sanitized, [](char c) { return c == '\'' || c == ' ' || c == '/' || c == ','; }, '_');
  for (std::size_t at = 0; (at = sanitized.find("\xE2\x80", at)) != std::string::npos; ++at) {
    const std::string_view mark = std::string_view(sanitized).substr(at, 3);
    if (mark == "\xE2\x80\x98" || mark == "\xE2\x80\x99" || mark == "\xE2\x80\x9B") {
      sanitized.replace(at, mark.size(), "_");
    }
  }
  return normalizedText(std::move(sanitized));
}
