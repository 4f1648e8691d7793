#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Size texts as the profiler prints them: a number, one separator, a two-letter unit ("500,11 GB").
//
// The unit is the last two bytes ("KB", "MB", "GB" or "TB", nothing else, exactly so), the number
// everything before the last three, read as a decimal with "," or "." as its point; what follows
// the number is ignored. A text with another unit or without a number is 0.
//
// All of them throw std::out_of_range for a text of fewer than three bytes.

double ParseSizeKB(std::string_view text);  // kilobytes: units of 1024

// Gigabytes. Units below a terabyte are binary (1 MB is 1/1024 GB), a terabyte is 1000 GB: every
// byte count that a snapshot draws from a terabyte text depends on this mix.
double ParseSizeGB(std::string_view text);

std::int64_t SizeToBytes(std::string_view text);  // gigabytes of 2^30 bytes, whole bytes
double SizeToMB(std::string_view text);           // gigabytes of 1024 megabytes, not rounded

// Decimal gigabytes (10^9 bytes), as drive makers print them. With `round` a whole number: up when
// the fraction is above 0.4 (not 0.5), else down.
double SizeToDecimalGB(std::string_view text, bool round);

// Truncates toward zero. A number beyond 64 bits becomes the nearest one within, NaN becomes 0.
std::int64_t truncateToInteger(long double number);
