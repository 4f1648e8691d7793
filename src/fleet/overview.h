#pragma once

#include <cstdint>

#include "fleet/database.h"
#include "huxread/result.h"
#include "inspect/overview.h"

namespace fleet {

// Asks a database that was opened for reading about the latest scans of all machines. `now` is in
// seconds since 1970-01-01 00:00:00 UTC. Its time grows with the installations of the latest scans,
// not with the scans that are kept. Fails with the reason of the library.
huxread::Result<inspect::Overview> overviewOf(Database& database, std::int64_t now);

}  // namespace fleet
