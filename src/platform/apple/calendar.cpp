#include "platform/apple/calendar.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <string_view>

#include "platform/apple/cfValue.h"

namespace platform::apple {

namespace {

bool isGregorian(CFLocaleRef locale) {
  const CFTypeRef calendar = CFLocaleGetValue(locale, kCFLocaleCalendarIdentifier);
  return calendar != nullptr && CFEqual(calendar, kCFGregorianCalendar);
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string formatFor(CFLocaleRef locale, double seconds, std::string_view pattern) {
  const Owned<CFDateFormatterRef> formatter(
      CFDateFormatterCreate(nullptr, locale, kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
  const Owned<CFStringRef> format = makeString(pattern);
  const Owned<CFDateRef> date(CFDateCreate(nullptr, seconds));
  if (!formatter || !format || !date) return "";
  CFDateFormatterSetFormat(formatter.get(), format.get());
  const Owned<CFStringRef> text(
      CFDateFormatterCreateStringWithDate(nullptr, formatter.get(), date.get()));
  return textOf(text.get());
}

}  // namespace

double presentTime() {
  return CFAbsoluteTimeGetCurrent();
}

std::string formatLocalDate(double seconds, std::string_view pattern) {
  const Owned<CFLocaleRef> user(CFLocaleCopyCurrent());
  if (isGregorian(user.get())) {
    std::string text = formatFor(user.get(), seconds, pattern);
    if (isAscii(text)) return text;
  }
  const Owned<CFLocaleRef> plain(CFLocaleCreate(nullptr, CFSTR("en_US_POSIX")));
  return formatFor(plain.get(), seconds, pattern);
}

}  // namespace platform::apple
