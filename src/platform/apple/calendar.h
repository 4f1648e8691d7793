#pragma once

#include <string>
#include <string_view>

namespace platform::apple {

// The present, in seconds since 2001-01-01 00:00:00 UTC.
double presentTime();

// Host::formatDate by the platform's date formatter with the user's locale; with "en_US_POSIX"
// where that has another calendar or other digits, in which the positions of a pattern do not hold.
std::string formatLocalDate(double seconds, std::string_view pattern);

}  // namespace platform::apple
