#pragma once

#include <string>

#include "keva/timestamp.h"
#include "platform/host.h"

// Dates of the machine as the texts that documents store.

// `seconds` since 2001-01-01 00:00:00 UTC.
std::string formatDate(platform::Host& host, double seconds, TimestampForm form);

std::string formatNow(platform::Host& host, TimestampForm form);
