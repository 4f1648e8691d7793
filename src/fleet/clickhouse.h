#pragma once

#include <array>
#include <string>
#include <vector>

#include "fleet/scan.h"
#include "fleet/tables.h"

// A fleet for ClickHouse, as statements that clickhouse-client --multiquery takes in.
//
// The tables are those of the database, with two columns more at their ends, `digest` and
// `row_number`: with machine_serial and scanned_at they are what a row is known by. The engine
// drops rows that are known already whenever it merges parts of a table; so what was loaded twice
// is there once in the end, and at any time in ..._now. Nothing is null in machine_serial and
// scanned_at, which rows are ordered by: what is not known is "" there.

namespace fleet {

// Makes what is missing of the tables and views. One statement on each line.
std::string clickHouseTables();

// "scans", "documents" (all entries of each document, behind the view "entries"), then the stored
// tables.
constexpr std::size_t kClickHouseCount = kStoredCount + 2;

// The rows of a scan as JSON objects, without anything between them, by table.
using ClickHouseRows = std::array<std::string, kClickHouseCount>;
ClickHouseRows clickHouseRows(const Scan& scan);

// Gathers the rows of many scans: an engine of columns wants few inserts of many rows.
class ClickHouseInserts {
 public:
  // The statements that got long enough to be run, one on each line; mostly none.
  std::string add(const ClickHouseRows& rows);

  // What is left.
  std::string finish();

 private:
  // Bytes of rows in one statement; as much is kept of each table at most.
  static constexpr std::size_t kBatch = std::size_t{4} << 20;

  std::string take(std::size_t table);

  ClickHouseRows waiting_;
};

}  // namespace fleet
