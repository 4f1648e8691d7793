#include "fleet/entriesTable.h"

#include <sqlite3.h>

#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "fleet/entries.h"
#include "fleet/tables.h"

// A table of SQLite that is code: https://sqlite.org/vtab.html. Without a function that creates it,
// it is there under its module's name (since 3.9).

namespace fleet {

namespace {

// That many columns are the scan's, and say which files are to be opened.
constexpr int kOfScan = std::size(kScanColumns);
constexpr int kBytes = kOfScan;
constexpr int kScan = kBytes + 1;
constexpr int kDocument = kOfScan;
constexpr int kPath = kDocument + 1;

struct EntriesTable : sqlite3_vtab {
  sqlite3* connection;
  bool now;
};

struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

struct Cursor : sqlite3_vtab_cursor {
  std::unique_ptr<sqlite3_stmt, Finalize> scans;
  std::unique_ptr<Entries> entries;  // of the scan
  const Entry* entry = nullptr;      // null at the end
  sqlite3_int64 number = 0;          // of the entry in its scan
};

EntriesTable& tableOf(sqlite3_vtab* table) {
  return *static_cast<EntriesTable*>(table);
}
Cursor& cursorOf(sqlite3_vtab_cursor* cursor) {
  return *static_cast<Cursor*>(cursor);
}

int connect(sqlite3* connection, void* which, int /*count*/, const char* const* /*arguments*/,
            sqlite3_vtab** made, char** /*error*/) {
  const int code = sqlite3_declare_vtab(
      connection,
      "CREATE TABLE entries (file TEXT, machine_serial TEXT, serial TEXT, scanned_at TEXT,"
      " document TEXT, path TEXT, value TEXT)");
  if (code != SQLITE_OK) return code;
  sqlite3_vtab_config(connection, SQLITE_VTAB_INNOCUOUS);  // views may use it; older ones refuse
  *made = new (std::nothrow) EntriesTable{{}, connection, which != nullptr};
  return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int disconnect(sqlite3_vtab* table) {
  delete &tableOf(table);
  return SQLITE_OK;
}

// Which of the scan's columns have to be equal to something, as bits. The library compares once
// more.
int bestIndex(sqlite3_vtab* /*table*/, sqlite3_index_info* info) {
  int wanted = 0;
  int arguments = 0;
  for (int column = 0; column < kOfScan; ++column) {
    for (int i = 0; i < info->nConstraint; ++i) {
      const auto& constraint = info->aConstraint[i];
      const bool fits = constraint.usable != 0 && constraint.iColumn == column &&
                        constraint.op == SQLITE_INDEX_CONSTRAINT_EQ;
      if (!fits || (wanted & (1 << column)) != 0) continue;
      wanted |= 1 << column;
      info->aConstraintUsage[i].argvIndex = ++arguments;
    }
  }
  constexpr double kEverything = 1e9;
  constexpr double kOneMachine = 1e4;
  info->idxNum = wanted;
  info->estimatedCost = wanted == 0 ? kEverything : kOneMachine;
  info->estimatedRows = static_cast<sqlite3_int64>(info->estimatedCost);
  return SQLITE_OK;
}

int openCursor(sqlite3_vtab* /*table*/, sqlite3_vtab_cursor** made) {
  *made = new (std::nothrow) Cursor;
  return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int closeCursor(sqlite3_vtab_cursor* cursor) {
  delete &cursorOf(cursor);
  return SQLITE_OK;
}

int next(sqlite3_vtab_cursor* at) {
  Cursor& cursor = cursorOf(at);
  ++cursor.number;
  for (;;) {
    cursor.entry = cursor.entries ? cursor.entries->next() : nullptr;
    if (cursor.entry != nullptr) return SQLITE_OK;
    const int code = sqlite3_step(cursor.scans.get());
    cursor.number = 1;
    if (code != SQLITE_ROW) return code == SQLITE_DONE ? SQLITE_OK : code;
    const void* bytes = sqlite3_column_blob(cursor.scans.get(), kBytes);
    const int size = sqlite3_column_bytes(cursor.scans.get(), kBytes);
    auto file = huxread::Container::parse(
        {static_cast<const char*>(bytes), static_cast<std::size_t>(size)});
    if (file) cursor.entries = std::make_unique<Entries>(std::move(*file));
  }
}

// The comparison of the library may be by another collating sequence: this one is wider than each.
int filter(sqlite3_vtab_cursor* at, int wanted, const char* /*name*/, int count,
           sqlite3_value** values) {
  Cursor& cursor = cursorOf(at);
  const EntriesTable& table = tableOf(cursor.pVtab);
  std::string query = "SELECT ";
  for (const ScanColumn& each : kScanColumns) query += std::string(each.source) + ", ";
  query += "bytes, id FROM _scans JOIN _files ON scan = id WHERE ";
  query += table.now ? "latest" : "1";
  for (int column = 0; column < kOfScan; ++column) {
    if ((wanted & (1 << column)) == 0) continue;
    query +=
        std::string(" AND rtrim(") + kScanColumns[column].source + ") = rtrim(?) COLLATE NOCASE";
  }
  query += " ORDER BY id";
  sqlite3_stmt* compiled = nullptr;
  const int code = sqlite3_prepare_v2(table.connection, query.c_str(), -1, &compiled, nullptr);
  if (code != SQLITE_OK) return code;
  cursor.scans.reset(compiled);
  cursor.entries.reset();
  for (int i = 0; i < count; ++i) sqlite3_bind_value(compiled, i + 1, values[i]);
  return next(at);
}

int atEnd(sqlite3_vtab_cursor* at) {
  return cursorOf(at).entry == nullptr ? 1 : 0;
}

int column(sqlite3_vtab_cursor* at, sqlite3_context* context, int place) {
  const Cursor& cursor = cursorOf(at);
  if (place < kOfScan) {
    sqlite3_result_value(context, sqlite3_column_value(cursor.scans.get(), place));
    return SQLITE_OK;
  }
  const Entry& entry = *cursor.entry;
  const std::string& text = place == kPath ? entry.path : entry.value;
  const std::string_view shown = place == kDocument ? entry.document : std::string_view(text);
  sqlite3_result_text(context, shown.data(), static_cast<int>(shown.size()), SQLITE_TRANSIENT);
  return SQLITE_OK;
}

// The same from every cursor: the library takes rows of one number for one.
int rowNumber(sqlite3_vtab_cursor* at, sqlite3_int64* number) {
  constexpr int kNumberBits = 32;
  const Cursor& cursor = cursorOf(at);
  *number = sqlite3_column_int64(cursor.scans.get(), kScan) << kNumberBits | cursor.number;
  return SQLITE_OK;
}

sqlite3_module makeModule() {
  sqlite3_module module{};
  module.xConnect = connect;
  module.xBestIndex = bestIndex;
  module.xDisconnect = disconnect;
  module.xOpen = openCursor;
  module.xClose = closeCursor;
  module.xFilter = filter;
  module.xNext = next;
  module.xEof = atEnd;
  module.xColumn = column;
  module.xRowid = rowNumber;
  return module;
}

}  // namespace

bool offerEntries(sqlite3* connection) {
  static const sqlite3_module kModule = makeModule();
  static char now;  // its address tells the second module from the first
  return sqlite3_create_module(connection, "entries", &kModule, nullptr) == SQLITE_OK &&
         sqlite3_create_module(connection, "entries_now", &kModule, &now) == SQLITE_OK;
}

}  // namespace fleet
