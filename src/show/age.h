#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace show {

// How long before `now`, in seconds since 1970-01-01 00:00:00 UTC, a time was ("4 min ago"); ""
// for what is no time and for the future.
std::string age(std::string_view time, std::int64_t now);

}  // namespace show
