#include "fleet/tables.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include "base/formatString.h"
#include "fleet/scan.h"

namespace fleet {

namespace {

using machine::Changes;
using machine::Column;
using machine::Table;
using machine::Type;

constexpr const char* kScansTable =
    // owner: what tells machines apart, the machine_serial of the views. latest: whether no other
    // scan of that machine is newer.
    "CREATE TABLE _scans (id INTEGER PRIMARY KEY, digest TEXT NOT NULL, file TEXT NOT NULL,"
    " owner TEXT, serial TEXT, scanned_at TEXT, scanned_unix INTEGER, source TEXT NOT NULL,"
    " not_recorded TEXT NOT NULL, latest INTEGER NOT NULL);"
    "CREATE INDEX _scans_digest ON _scans (digest);"
    "CREATE INDEX _scans_owner ON _scans (owner);"
    "CREATE INDEX _scans_serial ON _scans (serial);"
    "CREATE INDEX _scans_latest ON _scans (id) WHERE latest;"
    "CREATE TABLE _seed (seed INTEGER NOT NULL); INSERT INTO _seed VALUES (random());"
    "CREATE TABLE _files (scan INTEGER PRIMARY KEY, bytes BLOB NOT NULL);"
    "CREATE VIEW scans AS SELECT file, digest, owner AS machine_serial, serial, scanned_at,"
    " scanned_unix, source, not_recorded, latest, length(bytes) AS file_bytes"
    " FROM _scans JOIN _files ON scan = id;";

const char* typeOf(const Column& column) {
  switch (column.type) {
    case Type::Text:
      return "TEXT";
    case Type::Real:
      return "REAL";
    default:
      return "INTEGER";
  }
}

std::string definitions(const Table& table, const std::vector<std::size_t>& columns) {
  std::string list;
  for (const std::size_t column : columns) {
    list += ", " + quotedName(table.columns[column]) + " " + typeOf(table.columns[column]);
  }
  return list;
}

std::string viewOf(std::size_t place) {
  const Table& table = storedTable(place);
  const Split& split = splitOf(place);
  std::string list;
  for (const auto& [name, source] : kScanColumns) {
    if (findColumn(table, name) != nullptr) continue;
    list += formatString("%ss.%s AS %s", list.empty() ? "" : ", ", source, name);
  }
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const bool own = std::ranges::find(split.own, i) != split.own.end();
    const std::string name = quotedName(table.columns[i]);
    list += formatString(", %s.%s AS %s", own ? "l" : "r", name.c_str(), name.c_str());
  }
  return list;
}

std::string creationOf(std::size_t place) {
  const Table& table = storedTable(place);
  const std::string name(table.name);
  const Split& split = splitOf(place);
  // Said twice, so that the library finds the scan of a link and the links of a scan.
  const std::string scan =
      formatString("s.id = l._id >> %d AND l._id BETWEEN s.id << %d AND (s.id + 1 << %d) - 1",
                   kPlaceBits, kPlaceBits, kPlaceBits);
  const std::string join = " AS SELECT " + viewOf(place) + " FROM _" + name + "_links l JOIN _" +
                           name + "_rows r ON r._id = l._row JOIN _scans s ON " + scan;
  const std::string parts[] = {
      "CREATE TABLE _" + name +
          "_rows (_id INTEGER PRIMARY KEY, _hash INTEGER NOT NULL, _now INTEGER NOT NULL"
          " DEFAULT 0" +
          definitions(table, split.shared) + ");",
      "CREATE INDEX _" + name + "_hash ON _" + name + "_rows (_hash);",
      "CREATE TABLE _" + name + "_links (_id INTEGER PRIMARY KEY, _row INTEGER NOT NULL" +
          definitions(table, split.own) + ");",
      "CREATE VIEW " + name + join + ";",
      "CREATE VIEW " + name + "_now" + join + " WHERE s.latest;",
  };
  return std::accumulate(std::begin(parts), std::end(parts), std::string());
}

// Of all machines, and without walking their links.
constexpr const char* kSpread =
    "CREATE INDEX _software_name ON _software_rows (name);"
    "CREATE VIEW software_spread AS SELECT name, version, sum(_now) AS installations"
    " FROM _software_rows WHERE _now > 0 GROUP BY name, version;";

std::vector<std::string> storedNames() {
  std::vector<std::string> names;
  for (const Table& table : machine::kTables) names.emplace_back(table.name);
  names.emplace_back(kFindings.name);
  return names;
}

// What the library plans queries by, as if it had looked: many machines share a row, and a scan has
// fewer links than there are rows. Without, it goes through all links where it could begin with the
// rows of a name, or through all rows where it could begin with the links of a scan.
std::string statistics() {
  std::string sql =
      "ANALYZE sqlite_master; INSERT INTO sqlite_stat1 VALUES"
      " ('_scans', '_scans_digest', '20000 1'), ('_scans', '_scans_owner', '20000 2'),"
      " ('_scans', '_scans_serial', '20000 2'), ('_software_rows', '_software_name', '100000 20')";
  for (const std::string& table : storedNames()) {
    const char* const name = table.c_str();
    sql += formatString(
        ", ('_%s_rows', '_%s_hash', '100000 1'), ('_%s_links', '_%s_of', '3000000 30')", name, name,
        name, name);
  }
  return sql + ";";
}

std::array<Split, kStoredCount> makeSplits() {
  std::array<Split, kStoredCount> splits;
  for (std::size_t table = 0; table < kStoredCount; ++table) {
    const auto& columns = storedTable(table).columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const bool own = columns[i].changes == Changes::Yes && columns[i].type != Type::Text;
      (own ? splits[table].own : splits[table].shared).push_back(i);
    }
  }
  return splits;
}

}  // namespace

std::string quotedName(const Column& column) {
  return '"' + std::string(column.name) + '"';
}

const Table& storedTable(std::size_t table) {
  return table < machine::kTableCount ? machine::kTables[table] : kFindings;
}

const Split& splitOf(std::size_t table) {
  static const std::array<Split, kStoredCount> kSplits = makeSplits();
  return kSplits[table];
}

std::string creation() {
  std::string sql = kScansTable;
  for (std::size_t table = 0; table < kStoredCount; ++table) sql += creationOf(table);
  return sql + kSpread + statistics() +
         formatString("PRAGMA application_id = %d; PRAGMA user_version = %d;", kApplication,
                      kVersion);
}

std::string indexing() {
  std::string sql;
  for (const std::string& table : storedNames()) {
    const char* const name = table.c_str();
    sql += formatString("CREATE INDEX IF NOT EXISTS _%s_of ON _%s_links (_row);", name, name);
  }
  return sql;
}

std::vector<std::string> publicNames() {
  std::vector<std::string> names = {"scans"};
  for (const std::string& table : storedNames()) {
    names.push_back(table);
    names.push_back(table + "_now");
  }
  names.insert(names.end(), {"software_spread", "entries", "entries_now"});
  return names;
}

}  // namespace fleet
