#pragma once

#include <cstdint>
#include <string>

#include "platform/host.h"

// Collects what `system_profiler` says of the machine.

// Which part of one data type's output is kept, so that the pieces would make one document.
enum class PieceMode {
  Middle = 0,  // without the XML around its dictionaries
  First = 1,   // with what stands before them
  Last = 2,    // with what stands behind them
};

// Runs the profiler for one data type and returns its piece, within the wrapper that makes it a
// document; `length` receives the length of the piece alone, in bytes. What the tool's wrapper is
// goes by its length, and is never looked at: an output that cannot hold more than that has an
// empty piece, and gives no document ("").
std::string profileDataType(platform::Host& host, const std::string& dataType, PieceMode mode,
                            std::uint32_t& length);

// Runs the profiler for every data type that a scan reads, one after the other, and returns an
// array with the dictionaries of all of them. Each document is parsed by itself: one that is
// damaged or cut costs its own data type, not the others. With `progress` the percentage is printed
// after every second data type, for programs that watch a silent run.
platform::PropertyList collectProfile(platform::Host& host, bool progress);

// What the profiler says when it is asked for everything at once.
std::string collectRawProfile(platform::Host& host);
