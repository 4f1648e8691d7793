#pragma once

#include <string>

#include "keva/kevaDoc.h"

// "OS": the operating system.
void PostProcessOperatingSystem(kevaDoc& snapshot, const kevaDoc& raw);

// An uptime ("up 12:3:45:10": days, hours, minutes, seconds, read from the end) as the interval
// "DDDDDDDDHHMMSS.000000:000". Of the text only the last word is read, and of that only digits and
// ":".
std::string uptimeInterval(const std::string& uptime);
