#include "platform/portable/calendar.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

// The zones are in POSIX's notation (hours west of Greenwich), which needs no zone files.
TEST(Calendar, FormatsInTheLocalTimeZone) {
  constexpr double kDate = 536457599;  // 2017-12-31 23:59:59 UTC
  const struct {
    const char* zone;
    double seconds;
    const char* date;
  } cases[] = {
      {"EST5EDT,M3.2.0,M11.1.0", kDate,             "20171231185959.000000 -0500"  },
      {"EST5EDT,M3.2.0,M11.1.0", kDate + 16e6,      "20180705002639.000000 -0400"  },
      {"NST3:30",                kDate,             "20171231202959.000000 -0330"  },
      {"LMT4:56:02",             kDate,             "20171231190357.000000 -045602"},
      {"UTC0",                   -7e10,             "-2181015193320.000000 +0000"  },
      {"UTC0",                   1e18,              ""                             },
      {"UTC0",                   -978307200 - 0.25, "19691231235959.000000 +0000"  },
  };
  for (const auto& [zone, seconds, date] : cases) {
    setenv("TZ", zone, 1);
    tzset();
    EXPECT_EQ(platform::formatLocalDate(seconds, "yyyyMMddHHmmss.000000 ZZ"), date) << zone;
  }
}
