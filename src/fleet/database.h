#pragma once

#include <csignal>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "huxread/result.h"
#include "machine/description.h"

struct sqlite3;
struct sqlite3_stmt;

// SQLite, as far as a fleet needs it: its version 3.19, which the oldest Mac has, suffices.

namespace fleet {

class Database;

// A statement that was compiled; valid as long as its database. Parameters count from 1, columns
// from 0. Texts and bytes that are bound must stay where they are until the statement was run.
class Statement {
 public:
  Statement() = default;

  // Whether there was anything to compile: not in blanks and comments.
  explicit operator bool() const { return statement_ != nullptr; }

  void bind(int parameter, std::int64_t value);
  void bind(int parameter, std::string_view text);
  void bind(int parameter, const machine::Value& value);
  void bindBytes(int parameter, std::string_view bytes);

  enum class Step { Row, Done, Failed };

  // On to the next row. After Done or Failed it can be bound and run once more.
  Step step();

  // Lets go of a row before the last.
  void reset();

  int columnCount() const;
  std::string columnName(int column) const;

  // Of the row; texts and bytes until the next step. What is null is 0 and "".
  std::int64_t integer(int column) const;
  std::string_view text(int column) const;
  std::string_view bytes(int column) const;
  // Bytes become the text that SQL writes them as, x'00FF'.
  machine::Value value(int column) const;

 private:
  friend class Database;
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

class Database {
 public:
  enum class Access { Read, Write };

  // An empty path is a database of its own on disk that goes with the connection. Fails with the
  // reason of the library.
  static huxread::Result<Database> open(const std::string& path, Access access);

  sqlite3* handle() const { return connection_.get(); }

  // What the last call that failed met.
  std::string problem() const;
  // Whether that was another program that is writing.
  bool busy() const;

  // From now on a statement ends, and fails, while the flag, which a signal handler sets, is not 0.
  void endStatementsWhen(const volatile std::sig_atomic_t& flag) const;

  // Runs statements without results; false when one fails.
  bool run(const std::string& sql) const;

  // The first statement of the text. `end` is where the next one begins, or after an error about
  // where it was met.
  huxread::Result<Statement> prepare(std::string_view sql, std::size_t* end = nullptr) const;

  // The one number that a query gives; 0 without.
  std::int64_t number(const std::string& sql) const;

 private:
  struct Close {
    void operator()(sqlite3* connection) const;
  };
  explicit Database(sqlite3* connection) : connection_(connection) {}

  std::unique_ptr<sqlite3, Close> connection_;
};

}  // namespace fleet
