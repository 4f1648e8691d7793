#include "fleet/query.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "base/formatString.h"
#include "fleet/entriesTable.h"
#include "fleet/store.h"
#include "fleet/versionOrder.h"

namespace fleet {

using huxread::Error;
using huxread::Result;

namespace {

int authorize(void* /*unused*/, int action, const char* first, const char* second,
              const char* /*database*/, const char* /*view*/) {
  constexpr std::string_view kPragmas[] = {"table_info",    "index_list",     "index_info",
                                           "database_list", "collation_list", "compile_options"};
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_RECURSIVE:
      return SQLITE_OK;
    case SQLITE_FUNCTION:
      return std::string_view(second) == "load_extension" ? SQLITE_DENY : SQLITE_OK;
    case SQLITE_PRAGMA:
      return std::ranges::find(kPragmas, first) == std::end(kPragmas) ? SQLITE_DENY : SQLITE_OK;
    default:
      return SQLITE_DENY;
  }
}

// Characters before a place in the text, in UTF-8.
std::size_t charactersBefore(std::string_view text, std::size_t place) {
  return static_cast<std::size_t>(std::ranges::count_if(text.substr(0, place), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

// Where the token is that a message names: before the place that the compiler had come to in
// `near "FORM": syntax error`, else where "no such column: nane" has its name first.
std::optional<std::size_t> placeOf(const std::string& problem, std::string_view sql,
                                   std::size_t end) {
  constexpr std::string_view kNear = "near \"";
  if (problem.starts_with(kNear)) {
    const std::size_t size = problem.rfind("\": ") - kNear.size();
    if (size <= end && sql.substr(end - size, size) == problem.substr(kNear.size(), size)) {
      return end - size;
    }
    return std::nullopt;
  }
  const std::size_t colon = problem.rfind(": ");
  if (!problem.starts_with("no such ") || colon == std::string::npos) return std::nullopt;
  const std::size_t place = sql.find(problem.substr(colon + 2));
  return place == std::string_view::npos ? std::nullopt : std::optional(place);
}

}  // namespace

Result<Database> openForReading(const std::string& path) {
  if (access(path.c_str(), R_OK) != 0) return Error{std::strerror(errno)};
  Result<Database> database = Database::open(path, Database::Access::Read);
  if (!database) return database;
  // What a killed program left half written is put right first, which takes a writer.
  if (!database->run("SELECT * FROM sqlite_master") &&
      sqlite3_extended_errcode(database->handle()) == SQLITE_READONLY_ROLLBACK) {
    Result<Database> writer = Database::open(path, Database::Access::Write);
    if (writer) writer->run("SELECT * FROM sqlite_master");
  }
  if (const auto error = recognise(*database)) return *error;
  if (!restrictToReading(*database)) return Error{database->problem()};
  return database;
}

bool restrictToReading(Database& database) {
  sqlite3* connection = database.handle();
  sqlite3_limit(connection, SQLITE_LIMIT_ATTACHED, 0);
  // "Safari" is a text where nothing is called so. Libraries that do not know the setting do that.
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);
  return database.run(
             "PRAGMA query_only = ON; PRAGMA temp_store = FILE; PRAGMA cache_size = -65536;") &&
         offerVersionKey(connection) && offerEntries(connection) &&
         // Now, since declaring them counts as writing.
         database.run("SELECT 1 FROM entries, entries_now LIMIT 0") &&
         sqlite3_set_authorizer(connection, authorize, nullptr) == SQLITE_OK;
}

bool isComplete(const std::string& sql) {
  return sqlite3_complete(sql.c_str()) != 0;
}

Result<Statement> compileQuery(Database& database, std::string_view sql, std::size_t& end) {
  Result<Statement> statement = database.prepare(sql, &end);
  if (statement) return statement;
  const std::string problem = statement.error().message;
  if (problem == "not authorized") return Error{"a query can only read"};
  const auto place = placeOf(problem, sql, end);
  if (!place) return statement;
  return Error{problem + formatString(", at character %zu", charactersBefore(sql, *place) + 1)};
}

}  // namespace fleet
