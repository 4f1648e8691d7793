#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Seconds since 1970-01-01 00:00:00 UTC of a time as tables have it, "2026-11-21T16:22:05+01:00" or
// with "Z" (RFC 3339). Nothing for what is no such time.
std::optional<std::int64_t> unixSeconds(std::string_view time);
