#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/formatString.h"
#include "base/text.h"
#include "platform/portable/bundleFolder.h"
#include "platform/portable/calendar.h"
#include "platform/portable/propertyListReader.h"
#include "support/apple/objects.h"
#include "support/apple/standIn.h"

using namespace standIn;
using platform::PropertyList;

namespace {

Object* makeNumber(Kind kind, PropertyList::Number number) {
  return make({kind, "", number, {}});
}

Object* makeValue(const PropertyList& value) {
  if (value.text() != nullptr) return make({String, *value.text()});
  if (value.boolean() != nullptr) return makeNumber(Flag, {{}, *value.boolean()});
  if (value.number() != nullptr) return makeNumber(Number, *value.number());
  if (value.date() != nullptr) return makeNumber(Date, {{}, 0, value.date()->seconds});
  std::vector<Object*> parts;
  if (value.array() != nullptr) {
    for (const PropertyList& element : *value.array()) parts.push_back(makeValue(element));
    return make({Array, "", {}, std::move(parts)});
  }
  if (value.dictionary() == nullptr) return make({Data});
  for (const auto& [key, entry] : *value.dictionary()) {
    parts.insert(parts.begin(), {make({String, key}), makeValue(entry)});
  }
  return make({Dictionary, "", {}, std::move(parts)});
}

// CFBundle notes in the information dictionary where it found it, as a URL.
Object* makeBundle(const platform::Bundle& bundle) {
  Object* info = makeValue(platform::readBundleInfo(bundle.path));
  info->parts.push_back(make({String, "CFBundleInfoPlistURL"}));
  info->parts.push_back(make({Url, bundle.path + "/Contents/Info.plist"}));
  return make({Bundle, bundle.path, {}, {info}});
}

// The regions whose dates are other texts than those of all the others.
struct Region {
  std::string_view name;
  bool isGregorian;
  int years;              // ahead of the Gregorian calendar's
  std::string_view zero;  // the digit
};
constexpr Region kRegions[] = {
    {"ar_EG",                   true,  0,     "\u0660"},
    {"fa_IR",                   false, -621,  "\u06F0"},
    {"th_TH",                   false, 543,   "0"     },
    {"ja_JP@calendar=japanese", false, -1988, "0"     },
};

const Region& regionOf(const Object& locale) {
  static constexpr Region kPlain = {"", true, 0, "0"};
  const auto* found = std::ranges::find(kRegions, locale.text, &Region::name);
  return found == std::end(kRegions) ? kPlain : *found;
}

// A date that was formatted with ASCII digits and the Gregorian calendar; its year comes first.
std::string inRegion(const Region& region, std::string date) {
  const int year = std::stoi(date.substr(0, 4)) + region.years;
  std::string text;
  for (const char c : formatString("%04d", year) + date.substr(4)) {
    text += c < '0' || c > '9' ? std::string(1, c) : std::string(region.zero);
    if (c > '0' && c <= '9') text.back() = static_cast<char>(text.back() + c - '0');
  }
  return text;
}

CFIndex utf16Length(std::string_view utf8) {
  CFIndex length = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) length += byte >= 0xF0 ? 2 : 1;
  }
  return length;
}

}  // namespace

static const char kNoAllocator = 0;
const CFAllocatorRef kCFAllocatorNull = reinterpret_cast<CFAllocatorRef>(&kNoAllocator);

// Of these only the identity counts.
static const char kCalendarKey = 0;
static const char kGregorian = 0;
static const char kOtherCalendar = 0;
const CFLocaleKey kCFLocaleCalendarIdentifier = reinterpret_cast<CFLocaleKey>(&kCalendarKey);
const CFCalendarIdentifier kCFGregorianCalendar =
    reinterpret_cast<CFCalendarIdentifier>(&kGregorian);

CFStringRef standInString(const char* text) {
  return refOf<CFStringRef>(make({String, text, {}, {}, kConstant}));
}

#define STAND_IN_TYPE(name, kind)  \
  CFTypeID CF##name##GetTypeID() { \
    return kind;                   \
  }
STAND_IN_TYPE(String, String)
STAND_IN_TYPE(Number, Number)
STAND_IN_TYPE(Boolean, Flag)
STAND_IN_TYPE(Date, Date)
STAND_IN_TYPE(Array, Array)
STAND_IN_TYPE(Dictionary, Dictionary)

CFTypeID CFGetTypeID(CFTypeRef object) {
  return objectOf(object, Any, __func__).kind;
}

void CFRelease(CFTypeRef object) {
  release(objectOf(object, Any, __func__));
}

Boolean CFEqual(CFTypeRef object, CFTypeRef other) {
  if (object == nullptr || other == nullptr) complain(__func__, "no object");
  return object == other;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex size,
                                    CFStringEncoding, Boolean) {
  const std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
  const bool isUtf8 = text.find_first_of("\xC0\xC1\xFE\xFF") == std::string::npos;  // nearly
  return isUtf8 ? refOf<CFStringRef>(make({String, text})) : nullptr;
}

CFStringRef CFStringCreateWithFormat(CFAllocatorRef, CFDictionaryRef, CFStringRef format, ...) {
  const std::string& form = objectOf(format, String, __func__).text;
  if (!form.starts_with("%@")) complain(__func__, "another format");
  std::va_list arguments;
  va_start(arguments, format);
  const std::string& argument = objectOf(va_arg(arguments, CFTypeRef), String, __func__).text;
  va_end(arguments);
  return refOf<CFStringRef>(make({String, argument + form.substr(2)}));
}

CFIndex CFStringGetLength(CFStringRef string) {
  return utf16Length(objectOf(string, String, __func__).text);
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding, UInt8 lossByte,
                         Boolean, UInt8* buffer, CFIndex size, CFIndex* used) {
  const std::string& text = objectOf(string, String, __func__).text;
  if (lossByte != 0) complain(__func__, "characters that are replaced");
  if (range.location != 0 || range.length != utf16Length(text))
    complain(__func__, "a part of a string");
  char* to = reinterpret_cast<char*>(buffer);
  *used = static_cast<CFIndex>(text.copy(to, static_cast<std::size_t>(size)));
  return range.length;
}

CFNumberType CFNumberGetType(CFNumberRef number) {
  return static_cast<CFNumberType>(objectOf(number, Number, __func__).number.type);
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const PropertyList::Number& held = objectOf(number, Number, __func__).number;
  const bool isReal = type == kCFNumberFloat64Type;
  const void* from = isReal ? static_cast<const void*>(&held.real) : &held.integer;
  std::memcpy(value, from, sizeof held.real);
  return 1;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  return objectOf(boolean, Flag, __func__).number.integer != 0;
}

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime time) {
  return refOf<CFDateRef>(makeNumber(Date, {{}, 0, time}));
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
  return objectOf(date, Date, __func__).number.real;
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  return platform::presentTime();
}

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef, const UInt8* bytes, CFIndex size,
                                      CFAllocatorRef bytesDeallocator) {
  if (bytesDeallocator != kCFAllocatorNull) complain(__func__, "frees the caller's bytes");
  const auto* text = reinterpret_cast<const char*>(bytes);
  return refOf<CFDataRef>(make({Data, std::string(text, static_cast<std::size_t>(size))}));
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(objectOf(array, Array, __func__).parts.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return objectOf(array, Array, __func__).parts.at(static_cast<std::size_t>(index));
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return static_cast<CFIndex>(objectOf(dictionary, Dictionary, __func__).parts.size() / 2);
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values) {
  const std::vector<Object*>& parts = objectOf(dictionary, Dictionary, __func__).parts;
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    *keys++ = parts[i];
    *values++ = parts[i + 1];
  }
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  const std::string& wanted = objectOf(key, String, __func__).text;
  const std::vector<Object*>& parts = objectOf(dictionary, Dictionary, __func__).parts;
  for (std::size_t i = 0; i < parts.size(); i += 2) {
    if (parts[i]->kind == String && parts[i]->text == wanted) return parts[i + 1];
  }
  return nullptr;
}

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef, CFDataRef document, CFOptionFlags,
                                                  CFStringRef*) {
  if (mac().binaryList != nullptr) return std::exchange(mac().binaryList, nullptr);
  const std::string& text = objectOf(document, Data, __func__).text;
  constexpr std::size_t kDeepest = 20000;  // no test has as many that do not stand in each other
  if (CountOccurrences(text, "<array>") > kDeepest) complain(__func__, "the end of the process");
  const auto value = platform::readPropertyList(text);
  return value ? makeValue(*value) : nullptr;
}

CFLocaleRef CFLocaleCopyCurrent() {
  return refOf<CFLocaleRef>(make({Locale, mac().region}));
}

CFLocaleRef CFLocaleCreate(CFAllocatorRef, CFLocaleIdentifier identifier) {
  return refOf<CFLocaleRef>(make({Locale, objectOf(identifier, String, __func__).text}));
}

CFTypeRef CFLocaleGetValue(CFLocaleRef locale, CFLocaleKey key) {
  if (key != kCFLocaleCalendarIdentifier) complain(__func__, "another key");
  const Region& region = regionOf(objectOf(locale, Locale, __func__));
  return region.isGregorian ? static_cast<CFTypeRef>(kCFGregorianCalendar) : &kOtherCalendar;
}

CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef, CFLocaleRef locale, CFDateFormatterStyle,
                                         CFDateFormatterStyle) {
  Object& used = objectOf(locale, Locale, __func__);
  return refOf<CFDateFormatterRef>(make({Formatter, "", {}, {share(&used)}}));
}

void CFDateFormatterSetFormat(CFDateFormatterRef formatter, CFStringRef format) {
  objectOf(formatter, Formatter, __func__).text = objectOf(format, String, __func__).text;
}

CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef, CFDateFormatterRef formatter,
                                                CFDateRef date) {
  const double seconds = objectOf(date, Date, __func__).number.real;
  const Object& used = objectOf(formatter, Formatter, __func__);
  const Object& locale = *used.parts.front();
  mac().formattedFor = locale.text;
  return refOf<CFStringRef>(
      make({String, inRegion(regionOf(locale), platform::formatLocalDate(seconds, used.text))}));
}

CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef, CFStringRef path, CFURLPathStyle, Boolean) {
  const std::string& text = objectOf(path, String, __func__).text;
  return text.empty() ? nullptr : refOf<CFURLRef>(make({Url, text}));
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle) {
  return refOf<CFStringRef>(make({String, objectOf(url, Url, __func__).text}));
}

CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
  const std::string& path = objectOf(url, Url, __func__).text;
  return refOf<CFStringRef>(make({String, path.substr(path.rfind('/') + 1)}));
}

CFArrayRef CFBundleCreateBundlesFromDirectory(CFAllocatorRef, CFURLRef folder, CFStringRef) {
  std::string path = objectOf(folder, Url, __func__).text;
  if (path.ends_with('/')) path.pop_back();
  std::vector<Object*> bundles;
  for (const platform::Bundle& bundle : platform::readBundleFolder(path, {})) {
    bundles.push_back(makeBundle(bundle));
  }
  return refOf<CFArrayRef>(make({Array, "", {}, std::move(bundles)}));
}

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle) {
  return refOf<CFDictionaryRef>(objectOf(bundle, Bundle, __func__).parts.front());
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  return refOf<CFURLRef>(make({Url, objectOf(bundle, Bundle, __func__).text}));
}
