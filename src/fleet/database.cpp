#include "fleet/database.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <type_traits>
#include <variant>

namespace fleet {

using huxread::Error;
using huxread::Result;

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

void Statement::bind(int parameter, std::int64_t value) {
  sqlite3_bind_int64(statement_.get(), parameter, value);
}

void Statement::bind(int parameter, std::string_view text) {
  sqlite3_bind_text(statement_.get(), parameter, text.data(), static_cast<int>(text.size()),
                    SQLITE_STATIC);
}

void Statement::bindBytes(int parameter, std::string_view bytes) {
  sqlite3_bind_blob(statement_.get(), parameter, bytes.data(), static_cast<int>(bytes.size()),
                    SQLITE_STATIC);
}

void Statement::bind(int parameter, const machine::Value& value) {
  std::visit(
      [&](const auto& known) {
        using Known = std::decay_t<decltype(known)>;
        if constexpr (std::is_same_v<Known, std::monostate>) {
          sqlite3_bind_null(statement_.get(), parameter);
        } else if constexpr (std::is_same_v<Known, double>) {
          sqlite3_bind_double(statement_.get(), parameter, known);
        } else if constexpr (std::is_same_v<Known, std::string>) {
          bind(parameter, std::string_view(known));
        } else {
          bind(parameter, static_cast<std::int64_t>(known));
        }
      },
      value);
}

Statement::Step Statement::step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return Step::Row;
  sqlite3_reset(statement_.get());
  return code == SQLITE_DONE ? Step::Done : Step::Failed;
}

void Statement::reset() {
  sqlite3_reset(statement_.get());
}

int Statement::columnCount() const {
  return sqlite3_column_count(statement_.get());
}

std::string Statement::columnName(int column) const {
  const char* name = sqlite3_column_name(statement_.get(), column);
  return name == nullptr ? "" : name;
}

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

std::string_view Statement::text(int column) const {
  const unsigned char* text = sqlite3_column_text(statement_.get(), column);
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(size)};
}

std::string_view Statement::bytes(int column) const {
  const void* bytes = sqlite3_column_blob(statement_.get(), column);
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

machine::Value Statement::value(int column) const {
  switch (sqlite3_column_type(statement_.get(), column)) {
    case SQLITE_INTEGER:
      return integer(column);
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement_.get(), column);
    case SQLITE_TEXT:
      return std::string(text(column));
    case SQLITE_BLOB: {
      std::string written = "x'";
      for (const char byte : bytes(column)) {
        written += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4U];
        written += "0123456789ABCDEF"[static_cast<unsigned char>(byte) & 15U];
      }
      return written + "'";
    }
    default:
      return {};
  }
}

void Database::Close::operator()(sqlite3* connection) const {
  sqlite3_close_v2(connection);
}

Result<Database> Database::open(const std::string& path, Access access) {
  struct stat status {};  // a pipe would be waited for
  if (!path.empty() && stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    return Error{"is no file"};
  }
  // One thread at a time uses it.
  int flags = SQLITE_OPEN_NOMUTEX;
  flags |= access == Access::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  sqlite3* connection = nullptr;
  // With a "/" in it "file:x" and ":memory:" are names of files, too.
  const std::string name = path.empty() || path.starts_with('/') ? path : "./" + path;
  const int code = sqlite3_open_v2(name.c_str(), &connection, flags, nullptr);
  Database database(connection);
  if (code != SQLITE_OK) return Error{database.problem()};
  constexpr int kPatience = 60'000;  // ms that another writer is waited for
  sqlite3_busy_timeout(connection, kPatience);
  return database;
}

std::string Database::problem() const {
  return connection_ == nullptr ? "out of memory" : sqlite3_errmsg(handle());
}

bool Database::busy() const {
  return sqlite3_errcode(handle()) == SQLITE_BUSY;
}

void Database::endStatementsWhen(const volatile std::sig_atomic_t& flag) const {
  constexpr int kPatience = 100;  // operations of the library's machine: a few rows
  const auto ended = [](void* context) {
    return static_cast<int>(*static_cast<const volatile std::sig_atomic_t*>(context));
  };
  sqlite3_progress_handler(handle(), kPatience, ended, const_cast<std::sig_atomic_t*>(&flag));
}

bool Database::run(const std::string& sql) const {
  return sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

Result<Statement> Database::prepare(std::string_view sql, std::size_t* end) const {
  Statement statement;
  sqlite3_stmt* compiled = nullptr;
  const char* rest = sql.data();
  const int code =
      sqlite3_prepare_v2(handle(), sql.data(), static_cast<int>(sql.size()), &compiled, &rest);
  statement.statement_.reset(compiled);
  if (end != nullptr) *end = static_cast<std::size_t>(rest - sql.data());
  if (code != SQLITE_OK) return Error{problem()};
  return statement;
}

std::int64_t Database::number(const std::string& sql) const {
  Result<Statement> query = prepare(sql);
  return query && query->step() == Statement::Step::Row ? query->integer(0) : 0;
}

}  // namespace fleet
