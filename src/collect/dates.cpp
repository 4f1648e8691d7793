#include "collect/dates.h"

std::string formatDate(platform::Host& host, double seconds, TimestampForm form) {
  return completeTimestamp(host.formatDate(seconds, timestampPattern(form)), form);
}

std::string formatNow(platform::Host& host, TimestampForm form) {
  return formatDate(host, host.now(), form);
}
