#include "keva/timestamp.h"

#include <cstdint>
#include <cstdlib>

const char* timestampPattern(TimestampForm form) {
  return form == TimestampForm::Long ? "yyyyMMddHHmmss.000000 ZZ" : "yyyy-MM-dd";
}

std::string completeTimestamp(std::string formatted, TimestampForm form) {
  constexpr std::size_t kBlank = 21;  // "yyyyMMddHHmmss.000000 sHHMM"
  constexpr std::size_t kSign = kBlank + 1;
  constexpr std::size_t kHours = kSign + 1;
  constexpr std::size_t kMinutes = kHours + 2;
  if (form == TimestampForm::Short || formatted.size() < kMinutes + 2) return formatted;
  const auto minutes = static_cast<std::uint8_t>(std::atoi(formatted.c_str() + kMinutes));
  const int hours = std::atoi(formatted.erase(kMinutes).c_str() + kHours);
  const auto offset = static_cast<std::uint16_t>(hours * 60 + minutes);
  // The sign takes the place of the blank.
  formatted[kBlank] = formatted[kSign];
  formatted.resize(kSign);
  formatted += std::to_string(offset);
  return formatted;
}
