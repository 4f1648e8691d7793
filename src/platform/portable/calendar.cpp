#include "platform/portable/calendar.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include "base/formatString.h"

namespace platform {

namespace {

constexpr double k2001 = 978307200;  // 2001-01-01 00:00:00 UTC in seconds since 1970

// "+0300"; with the seconds behind it in zones before standard time ("-045602").
std::string offsetText(long offset) {
  const long size = std::labs(offset);
  std::string text =
      formatString("%c%02ld%02ld", offset < 0 ? '-' : '+', size / 3600, size / 60 % 60);
  if (size % 60 != 0) text += formatString("%02ld", size % 60);
  return text;
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

std::string formatLocalDate(double seconds, const std::string& pattern) {
  const auto time = static_cast<std::time_t>(std::floor(seconds + k2001));
  std::tm local{};
  if (localtime_r(&time, &local) == nullptr) return "";
  const std::string year = formatString("%04d", local.tm_year + 1900);
  const auto twoDigits = [](int number) { return formatString("%02d", number); };
  const struct {
    std::string_view letters;
    std::string text;
  } fields[] = {
      {"yyyy", year                       },
      {"MM",   twoDigits(local.tm_mon + 1)},
      {"dd",   twoDigits(local.tm_mday)   },
      {"HH",   twoDigits(local.tm_hour)   },
      {"mm",   twoDigits(local.tm_min)    },
      {"ss",   twoDigits(local.tm_sec)    },
      {"ZZ",   offsetText(local.tm_gmtoff)},
  };
  std::string text;
  for (std::string_view rest = pattern; !rest.empty();) {
    std::size_t used = 0;
    for (const auto& field : fields) {
      if (!rest.starts_with(field.letters)) continue;
      text += field.text;
      used = field.letters.size();
      break;
    }
    if (used == 0) {
      text += rest.front();
      used = 1;
    }
    rest.remove_prefix(used);
  }
  return text;
}

}  // namespace platform
