#pragma once

struct sqlite3;

namespace fleet {

// Gives a connection the tables "entries" and "entries_now", which are read from the files that the
// database keeps, one file after the other: columns file, machine_serial, serial, scanned_at,
// document, path, value. Only the files are opened that a query asks for by "=" on one of the first
// four. False when the library refuses.
bool offerEntries(sqlite3* connection);

}  // namespace fleet
