#include "fleet/query.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "base/digits.h"
#include "base/formatString.h"
#include "base/utf8.h"
#include "fleet/entriesTable.h"
#include "fleet/store.h"
#include "fleet/versionOrder.h"
#include "huxread/layout.h"

namespace fleet {

using huxread::Error;
using huxread::Result;

namespace {

int authorize(void* /*unused*/, int action, const char* first, const char* second,
              const char* /*database*/, const char* /*view*/) {
  // The second takes the address of code.
  constexpr std::string_view kFunctions[] = {"load_extension", "fts3_tokenizer"};
  constexpr std::string_view kPragmas[] = {"table_info",    "index_list",     "index_info",
                                           "database_list", "collation_list", "compile_options"};
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_READ:
    case SQLITE_RECURSIVE:
      return SQLITE_OK;
    case SQLITE_FUNCTION:
      return std::ranges::find(kFunctions, second) != std::end(kFunctions) ? SQLITE_DENY
                                                                           : SQLITE_OK;
    case SQLITE_PRAGMA:
      return std::ranges::find(kPragmas, first) == std::end(kPragmas) ? SQLITE_DENY : SQLITE_OK;
    default:
      return SQLITE_DENY;
  }
}

bool isOfWord(char c) {
  return (static_cast<unsigned char>(c) & 0x80) != 0 || isDigit(c) || c == '_' ||
         (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Where a name first stands as a word of its own.
std::optional<std::size_t> placeOfName(const std::string& name, std::string_view sql) {
  for (std::size_t at = sql.find(name); at != std::string_view::npos; at = sql.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    const bool begins = at == 0 || !isOfWord(sql[at - 1]);
    if (begins && (end == sql.size() || !isOfWord(sql[end]))) return at;
  }
  return std::nullopt;
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
  return placeOfName(problem.substr(colon + 2), sql);
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
  // No text that a query makes takes more than the greatest file, which must come through.
  constexpr int kRest = 1 << 20;  // of a row beside the file
  sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, static_cast<int>(huxread::kMaxFileSize) + kRest);
  // Libraries that do not know these settings refuse them, without harm. "Safari" is a text where
  // nothing is called so, as it always was in those. What a file that somebody else made has in its
  // views calls no function with effects, and no query reaches what tables of code keep for
  // themselves.
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DML, 1, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  return database.run(
             "PRAGMA query_only = ON; PRAGMA temp_store = FILE; PRAGMA cache_size = -65536;") &&
         offerVersionKey(connection) && offerEntries(connection) &&
         // Now, since declaring them counts as writing.
         database.run("SELECT 1 FROM entries, entries_now LIMIT 0") &&
         sqlite3_set_authorizer(connection, authorize, nullptr) == SQLITE_OK;
}

std::string problemOf(const Database& database) {
  const bool refused = sqlite3_errcode(database.handle()) == SQLITE_AUTH;
  return refused ? "a query can only read" : database.problem();
}

bool isComplete(const std::string& sql) {
  return sqlite3_complete(sql.c_str()) != 0;
}

Result<Statement> compileQuery(Database& database, std::string_view text, std::size_t& at) {
  const std::size_t begin = at;
  const std::string_view sql = text.substr(begin);
  std::size_t end = 0;
  Result<Statement> statement = database.prepare(sql, &end);
  at = begin + end;
  if (statement) return statement;
  const std::string problem = problemOf(database);
  const auto place = placeOf(problem, sql, end);
  if (!place) return Error{problem};
  return Error{problem +
               formatString(", at character %zu", utf8Length(text.substr(0, begin + *place)) + 1)};
}

}  // namespace fleet
