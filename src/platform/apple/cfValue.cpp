#include "platform/apple/cfValue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/host.h"

namespace platform::apple {

namespace {

using Value = std::optional<PropertyList>;

bool isText(CFTypeRef object) {
  return CFGetTypeID(object) == CFStringGetTypeID();
}

// Read at full width whatever the type: who stores the number looks at the type.
PropertyList convertNumber(CFNumberRef object) {
  PropertyList::Number number{static_cast<NumberType>(CFNumberGetType(object))};
  if (isReal(number.type)) {
    CFNumberGetValue(object, kCFNumberFloat64Type, &number.real);
  } else {
    CFNumberGetValue(object, kCFNumberSInt64Type, &number.integer);
  }
  return number;
}

class Converter {
 public:
  explicit Converter(std::size_t documentSize) : left_(documentSize * kGrowth) {}

  // `depth`: how many arrays and dictionaries the object stands in.
  Value convert(CFTypeRef object, int depth) {
    Value scalar = scalarOf(object);
    if (scalar) {
      if (scalar->text() != nullptr && !takeText(scalar->text()->size())) return std::nullopt;
      return scalar;
    }
    if (depth == Host::kMaxNesting) return std::nullopt;
    return CFGetTypeID(object) == CFArrayGetTypeID()
               ? convertArray(static_cast<CFArrayRef>(object), depth + 1)
               : convertDictionary(static_cast<CFDictionaryRef>(object), depth + 1);
  }

 private:
  // Bytes of memory for each byte of the document; profiles need less than two. XML stays
  // below ten: a value takes 7 bytes of it or more ("<true/>"), an entry of a dictionary 13, a
  // letter in the most compact encoding a third of its UTF-8. In a binary list a value takes a byte
  // and an entry two, where it is referred to. Only objects that many others share get beyond.
  static constexpr std::size_t kGrowth = 128;

  bool take(std::size_t bytes) {
    if (bytes > left_) return false;
    left_ -= bytes;
    return true;
  }

  bool takeText(std::size_t size) {
    constexpr std::size_t kBlock = 64;  // bytes of memory around those of a text
    return take(size == 0 ? 0 : size + kBlock);
  }

  Value convertArray(CFArrayRef object, int depth) {
    PropertyList::Array array;
    const CFIndex count = CFArrayGetCount(object);
    if (!take(static_cast<std::size_t>(count) * sizeof(PropertyList))) return std::nullopt;
    array.reserve(static_cast<std::size_t>(count));
    for (CFIndex i = 0; i < count; ++i) {
      Value value = convert(CFArrayGetValueAtIndex(object, i), depth);
      if (!value) return std::nullopt;
      array.push_back(std::move(*value));
    }
    return PropertyList(std::move(array));
  }

  Value convertDictionary(CFDictionaryRef object, int depth) {
    PropertyList::Dictionary dictionary;
    const auto count = static_cast<std::size_t>(CFDictionaryGetCount(object));
    if (!take(count * sizeof(PropertyList::Dictionary::value_type))) return std::nullopt;
    std::vector<CFTypeRef> keys(count);
    std::vector<CFTypeRef> values(count);
    CFDictionaryGetKeysAndValues(object, keys.data(), values.data());
    dictionary.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      if (!isText(keys[i])) continue;
      std::string key = textOf(static_cast<CFStringRef>(keys[i]));
      if (!takeText(key.size())) return std::nullopt;
      Value value = convert(values[i], depth);
      if (!value) return std::nullopt;
      dictionary.emplace_back(std::move(key), std::move(*value));
    }
    // They are enumerated by their hashes: nothing that is numbered or set twice may hang on that.
    std::ranges::sort(dictionary, {}, &PropertyList::Dictionary::value_type::first);
    return PropertyList(std::move(dictionary));
  }

  std::size_t left_;  // bytes of memory that the tree may still take
};

}  // namespace

Owned<CFStringRef> makeString(std::string_view utf8) {
  return Owned<CFStringRef>(
      CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(utf8.data()),
                              static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

std::string textOf(CFStringRef string) {
  if (string == nullptr) return "";
  const CFIndex length = CFStringGetLength(string);  // in UTF-16 units
  std::string text(static_cast<std::size_t>(length) * 4, '\0');
  CFIndex used = 0;
  CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, 0, false,
                   reinterpret_cast<UInt8*>(text.data()), static_cast<CFIndex>(text.size()), &used);
  return {text.data(), static_cast<std::size_t>(used)};  // no larger than it must be: it stays
}

std::optional<PropertyList> scalarOf(CFTypeRef object) {
  if (isText(object)) return PropertyList(textOf(static_cast<CFStringRef>(object)));
  const CFTypeID type = CFGetTypeID(object);
  if (type == CFNumberGetTypeID()) return convertNumber(static_cast<CFNumberRef>(object));
  if (type == CFBooleanGetTypeID()) {
    return PropertyList(CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0);
  }
  if (type == CFDateGetTypeID()) {
    return PropertyList(PropertyList::Date{CFDateGetAbsoluteTime(static_cast<CFDateRef>(object))});
  }
  if (type == CFArrayGetTypeID() || type == CFDictionaryGetTypeID()) return std::nullopt;
  return PropertyList(PropertyList::Data{});
}

std::optional<PropertyList> valueOf(CFTypeRef object, std::size_t documentSize) {
  return Converter(documentSize).convert(object, 0);
}

}  // namespace platform::apple
