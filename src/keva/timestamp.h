#pragma once

#include <string>

// The two texts that a date is stored as, in local time:
//   long   "20171231235959.000000+180"  with the offset from UTC in minutes, not padded
//   short  "2017-12-31"
enum class TimestampForm { Long, Short };

// The date pattern (Unicode TR 35) to format a date with, before completeTimestamp.
const char* timestampPattern(TimestampForm form);

// Turns a date that was formatted with the long pattern ("20171231235959.000000 +0300") into the
// long form; leaves the short form alone. Digits behind the minutes of the offset (zones before
// standard time: "-045602") belong to the number that is read, whose
// minutes part wraps at 256. A text too short to have an offset stays as it is.
std::string completeTimestamp(std::string formatted, TimestampForm form);
