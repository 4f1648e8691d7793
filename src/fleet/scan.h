#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/container.h"
#include "huxread/result.h"
#include "inspect/findings.h"
#include "machine/description.h"
#include "platform/host.h"

// What a fleet keeps of one file, whatever the database.

namespace fleet {

// XXH3 of 128 bits, as xxh128sum(1) prints it: 32 hexadecimal digits. It tells contents apart that
// differ by accident; of what somebody may have made on purpose the bytes must be compared.
using Digest = std::string;
Digest digestOf(std::string_view bytes);

struct Scan {
  std::string file;      // as it was named
  std::string bytes;     // of the file
  Digest digest;         // of these
  machine::Value owner;  // serial number of the machine, else its UUID, else nothing
  std::optional<std::int64_t> scannedUnix;  // seconds since 1970-01-01 00:00:00 UTC
  machine::Description machine;
  std::vector<inspect::Finding> findings;  // gaps, remarks and limits
};

// Reads the tables of `content`, which was made from `bytes`. Fails as machine::describe does.
huxread::Result<Scan> readScan(std::string file, std::string bytes,
                               const huxread::Container& content, platform::Host& host);

// The findings as one more table of the schema: id, severity, text.
extern const machine::Table kFindings;
machine::Row rowOf(const inspect::Finding& finding);

}  // namespace fleet
