#pragma once

#include <cstdint>
#include <string>

#include "platform/host.h"

// Runs a shell command to its end and returns everything it printed on standard output, unchanged,
// NUL bytes included. `totalLength` receives the number of bytes; 0, with an empty text, when the
// command could not be started or printed nothing. Its standard error goes where this process's
// goes, how it ended is ignored.
//
// `chunkSize`, more than 0, is the size of each read, in bytes; it bounds nothing else. The first
// read is tried three times, so that a command which is slow to say its first word is not taken for
// silent.
std::string runCommand(platform::Host& host, const std::string& command, std::uint32_t& totalLength,
                       std::int32_t chunkSize);

// For commands that must print something: runs the command again while it prints nothing, at most
// kAttempts times in all.
std::string runCommandUntilItPrints(platform::Host& host, const std::string& command,
                                    std::int32_t chunkSize);

inline constexpr int kAttempts = 3;
