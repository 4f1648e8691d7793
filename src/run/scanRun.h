#pragma once

#include <cstdint>
#include <string>

#include "platform/host.h"

inline constexpr const char* kProgramVersion = "17.05.24";
inline constexpr const char* kClientVersion = "17.05.24.0";

// Switches of a run, each 0 or 1.
struct RunOptions {
  std::uint8_t containerOption;  // byte order of every document and file: 1 the machine's
  std::uint8_t skipScan;         // 1: do nothing
  std::uint8_t logMode;          // 1: print the phase log
};

// Scans the machine and writes the snapshot file into the current directory. `silent` prints the
// percentages and a final line for programs; `debug` writes what the profiler says instead of an
// inventory. `ipAddress` chooses the connection that names the machine, "" the first active one.
// `login` goes into the asset record.
//
// A file that cannot be created is reported on standard error; nothing else is reported, and
// whatever the machine does not tell is left out. Throws std::out_of_range for memory or cache
// sizes that are no sizes.
void scanRun(platform::Host& host, const RunOptions& options, bool silent, bool debug,
             const std::string& ipAddress, const std::string& login);
