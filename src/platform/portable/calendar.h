#pragma once

#include <string>
#include <string_view>

namespace platform {

// A point in time as the Gregorian calendar (also before its introduction) writes it, in UTC.
struct CalendarTime {
  int year = 2001;
  int month = 1;  // from 1
  int day = 1;    // from 1; values beyond a month's end count on
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// Seconds since 2001-01-01 00:00:00 UTC, as property lists and Host count time.
double secondsSince2001(const CalendarTime& time);

// The present in the same seconds.
double presentTime();

// Host::formatDate in the local time zone (TZ). Letters of the pattern other than the known ones
// (yyyy MM dd HH mm ss ZZ) and everything else are copied.
std::string formatLocalDate(double seconds, std::string_view pattern);

}  // namespace platform
