#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "fleet/database.h"
#include "huxread/result.h"

// The reading side of the database of a fleet, with the tables "entries" and "entries_now" too,
// which are not in the file.

namespace fleet {

// Opens what a Store made. Fails, in words, when it is not there or is something else.
huxread::Result<Database> openForReading(const std::string& path);

// From now on statements of this connection can only read: whatever writes, attaches, loads or
// changes a setting is refused. False when the library refuses that.
bool restrictToReading(Database& database);

// The statement of a person's text that begins at `at`, which is then where the next one does. The
// error says where it was met, as "character 10" of the text, when that is known.
huxread::Result<Statement> compileQuery(Database& database, std::string_view text, std::size_t& at);

// What ended the last query, in words.
std::string problemOf(const Database& database);

// Whether the last statement of a text is ended by a ";".
bool isComplete(const std::string& sql);

}  // namespace fleet
