#include "platform/apple/calendar.h"

#include <CoreFoundation/CoreFoundation.h>

#include "platform/apple/cfValue.h"

namespace platform::apple {

double presentTime() {
  return CFAbsoluteTimeGetCurrent();
}

std::string formatLocalDate(double seconds, const std::string& pattern) {
  const Owned<CFLocaleRef> locale(CFLocaleCopyCurrent());
  const Owned<CFDateFormatterRef> formatter(CFDateFormatterCreate(
      nullptr, locale.get(), kCFDateFormatterNoStyle, kCFDateFormatterNoStyle));
  const Owned<CFStringRef> format = makeString(pattern);
  const Owned<CFDateRef> date(CFDateCreate(nullptr, seconds));
  if (!formatter || !format || !date) return "";
  CFDateFormatterSetFormat(formatter.get(), format.get());
  const Owned<CFStringRef> text(
      CFDateFormatterCreateStringWithDate(nullptr, formatter.get(), date.get()));
  return textOf(text.get());
}

}  // namespace platform::apple
