#include "platform/portable/calendar.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <string_view>

namespace platform {

namespace {

constexpr double k2001 = 978307200;  // 2001-01-01 00:00:00 UTC in seconds since 1970

// At least `width` places, with zeros in front, the sign counted: printf's "%0*d".
void appendPadded(std::string& text, std::size_t width, long number) {
  std::array<char, 24> digits{};
  const char* end = std::to_chars(digits.begin(), digits.end(), std::labs(number)).ptr;
  const auto count = static_cast<std::size_t>(end - digits.begin());
  const std::size_t used = count + (number < 0 ? 1 : 0);
  if (number < 0) text += '-';
  if (used < width) text.append(width - used, '0');
  text.append(digits.data(), count);
}

// "+0300"; with the seconds behind it in zones before standard time ("-045602").
void appendOffset(std::string& text, long offset) {
  const long size = std::labs(offset);
  text += offset < 0 ? '-' : '+';
  appendPadded(text, 2, size / 3600);
  appendPadded(text, 2, size / 60 % 60);
  if (size % 60 != 0) appendPadded(text, 2, size % 60);
}

}  // namespace

double secondsSince2001(const CalendarTime& time) {
  // Days of the proleptic Gregorian calendar, counted in eras of 400 years that begin in March.
  const int year = time.month <= 2 ? time.year - 1 : time.year;
  const int era = (year >= 0 ? year : year - 399) / 400;
  const int yearOfEra = year - era * 400;
  const int dayOfYear = (153 * (time.month + (time.month > 2 ? -3 : 9)) + 2) / 5 + time.day - 1;
  const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  const double days = era * 146097.0 + dayOfEra - 719468;  // since 1970-01-01
  return days * 86400 + time.hour * 3600 + time.minute * 60 + time.second - k2001;
}

double presentTime() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(sinceEpoch).count() - k2001;
}

std::string formatLocalDate(double seconds, std::string_view pattern) {
  const auto time = static_cast<std::time_t>(std::floor(seconds + k2001));
  std::tm local{};
  if (localtime_r(&time, &local) == nullptr) return "";
  const struct {
    std::string_view letters;
    int number;
  } fields[] = {
      {"yyyy", local.tm_year + 1900},
      {"MM",   local.tm_mon + 1    },
      {"dd",   local.tm_mday       },
      {"HH",   local.tm_hour       },
      {"mm",   local.tm_min        },
      {"ss",   local.tm_sec        },
  };
  std::string text;
  text.reserve(pattern.size() + 8);
  for (std::string_view rest = pattern; !rest.empty();) {
    const auto* field = std::ranges::find_if(
        fields, [rest](const auto& known) { return rest.starts_with(known.letters); });
    if (field != std::end(fields)) {
      appendPadded(text, field->letters.size(), field->number);
      rest.remove_prefix(field->letters.size());
    } else if (rest.starts_with("ZZ")) {
      appendOffset(text, local.tm_gmtoff);
      rest.remove_prefix(2);
    } else {
      text += rest.front();
      rest.remove_prefix(1);
    }
  }
  return text;
}

}  // namespace platform
