#include "base/isoTime.h"

#include <chrono>
#include <cstddef>

namespace {

// A number of `digits` digits at a place of a text.
std::optional<int> digitsAt(std::string_view text, std::size_t place, std::size_t digits) {
  if (place + digits > text.size()) return std::nullopt;
  int number = 0;
  for (const char c : text.substr(place, digits)) {
    if (c < '0' || c > '9') return std::nullopt;
    number = 10 * number + (c - '0');
  }
  return number;
}

}  // namespace

std::optional<std::int64_t> unixSeconds(std::string_view time) {
  const auto year = digitsAt(time, 0, 4);
  const auto month = digitsAt(time, 5, 2);
  const auto day = digitsAt(time, 8, 2);
  const auto hour = digitsAt(time, 11, 2);
  const auto minute = digitsAt(time, 14, 2);
  const auto second = digitsAt(time, 17, 2);
  if (!year || !month || !day || !hour || !minute || !second) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  const std::string_view zone = time.substr(19);
  std::int64_t offset = 0;  // minutes
  if (zone != "Z") {
    const auto hours = digitsAt(zone, 1, 2);
    const auto minutes = digitsAt(zone, 4, 2);
    if (!hours || !minutes || (zone[0] != '+' && zone[0] != '-')) return std::nullopt;
    offset = (zone[0] == '-' ? -1 : 1) * (std::int64_t{60} * *hours + *minutes);
  }
  const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  return ((days * 24 + *hour) * 60 + *minute - offset) * 60 + *second;
}
