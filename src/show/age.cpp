#include "show/age.h"

#include <cstddef>

#include "base/formatString.h"
#include "base/isoTime.h"

namespace show {

std::string age(std::string_view time, std::int64_t now) {
  constexpr std::int64_t kMinute = 60;
  constexpr std::int64_t kHour = 60 * kMinute;
  constexpr std::int64_t kDay = 24 * kHour;
  const std::optional<std::int64_t> then = unixSeconds(time);
  if (!then || *then > now) return "";
  const std::int64_t seconds = now - *then;
  const auto many = [seconds](std::int64_t unit) {
    return static_cast<std::size_t>(seconds / unit);
  };
  if (seconds < kMinute) return "just now";
  if (seconds < kHour) return formatString("%zu min ago", many(kMinute));
  if (seconds < 2 * kDay) return formatString("%zu h ago", many(kHour));
  if (seconds < 60 * kDay) return formatString("%zu days ago", many(kDay));
  if (seconds < 730 * kDay) return formatString("%zu months ago", many(30 * kDay));
  return formatString("%zu years ago", many(365 * kDay));
}

}  // namespace show
