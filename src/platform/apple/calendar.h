#pragma once

#include <string>

namespace platform::apple {

// The present, in seconds since 2001-01-01 00:00:00 UTC.
double presentTime();

// Host::formatDate by the platform's date formatter with the user's locale.
std::string formatLocalDate(double seconds, const std::string& pattern);

}  // namespace platform::apple
