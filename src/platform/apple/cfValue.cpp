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

// `depth`: how many arrays and dictionaries the object stands in.
Value convert(CFTypeRef object, int depth);

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

Value convertArray(CFArrayRef object, int depth) {
  PropertyList::Array array;
  const CFIndex count = CFArrayGetCount(object);
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
  std::vector<CFTypeRef> keys(count);
  std::vector<CFTypeRef> values(count);
  CFDictionaryGetKeysAndValues(object, keys.data(), values.data());
  dictionary.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    Value value = convert(values[i], depth);
    if (!value) return std::nullopt;
    dictionary.emplace_back(textOf(static_cast<CFStringRef>(keys[i])), std::move(*value));
  }
  // They are enumerated by their hashes: nothing that is numbered or set twice may hang on that.
  std::ranges::sort(dictionary, {}, &PropertyList::Dictionary::value_type::first);
  return PropertyList(std::move(dictionary));
}

Value convert(CFTypeRef object, int depth) {
  const CFTypeID type = CFGetTypeID(object);
  if (type == CFStringGetTypeID()) return PropertyList(textOf(static_cast<CFStringRef>(object)));
  if (type == CFNumberGetTypeID()) return convertNumber(static_cast<CFNumberRef>(object));
  if (type == CFBooleanGetTypeID()) {
    return PropertyList(CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0);
  }
  if (type == CFDateGetTypeID()) {
    return PropertyList(PropertyList::Date{CFDateGetAbsoluteTime(static_cast<CFDateRef>(object))});
  }
  const bool isArray = type == CFArrayGetTypeID();
  if (!isArray && type != CFDictionaryGetTypeID()) return PropertyList(PropertyList::Data{});
  if (depth == Host::kMaxNesting) return std::nullopt;
  return isArray ? convertArray(static_cast<CFArrayRef>(object), depth + 1)
                 : convertDictionary(static_cast<CFDictionaryRef>(object), depth + 1);
}

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
  text.resize(static_cast<std::size_t>(used));
  return text;
}

std::optional<PropertyList> valueOf(CFTypeRef object) {
  return convert(object, 0);
}

}  // namespace platform::apple
