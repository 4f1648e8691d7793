#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "machine/schema.h"

// What a file says of one machine, as the tables of the schema.

namespace machine {

// Nothing (std::monostate) means that it is not known, whatever the type; a value is never 0, false
// or
// "" for want of a better one. Texts are valid UTF-8 without control characters but line breaks:
// what is neither has become U+FFFD.
using Value = std::variant<std::monostate, std::int64_t, double, bool, std::string>;

inline bool isKnown(const Value& value) {
  return value.index() != 0;
}

// The text of a value; "" when it is none.
std::string_view textOf(const Value& value);

// One value for each column of the table, in their order.
using Row = std::vector<Value>;

struct TableData {
  bool recorded = false;  // the file can hold this table, and does: without rows it is empty
  std::vector<Row> rows;
};

// A row of the table at that place in the schema, with nothing known.
Row emptyRow(std::size_t table);

enum class Source { Snapshot, Debug };

class Description {
 public:
  explicit Description(Source source) : source_(source) {}

  Source source() const { return source_; }

  // Items of the profiler's report that cannot be parsed or were cut off, so that rows are missing.
  bool lacksItems() const { return lacksItems_; }
  void setLacksItems() { lacksItems_ = true; }

  // By the place of the table in the schema (tableAt).
  TableData& operator[](std::size_t table) { return tables_[table]; }
  const TableData& operator[](std::size_t table) const { return tables_[table]; }

  // A column of the one row of the table "machine"; nothing also without a row.
  const Value& machine(std::size_t column) const;

 private:
  Source source_;
  bool lacksItems_ = false;
  std::array<TableData, kTableCount> tables_;
};

// What identifies a row (Identity in schema.h), to compare and to order by; "" when nothing does
// and its place must. Values are joined by a unit separator (byte 31), which no value holds.
std::string identityOf(const Table& table, const Row& row);

}  // namespace machine
