#include "fleet/store.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace fleet {

using huxread::Error;
using huxread::Result;
using machine::Row;
using machine::Value;
using Step = Statement::Step;

namespace {

// Of rows that are remembered to find their numbers without asking the database.
constexpr std::size_t kRememberedBytes = std::size_t{64} << 20;

// One that tells its kind, its length and its content: no two rows have the same.
void appendKey(std::string& key, const Value& value) {
  const auto append = [&key](const auto& number) {
    key.append(reinterpret_cast<const char*>(&number), sizeof number);
  };
  key += static_cast<char>(value.index());
  if (const auto* text = std::get_if<std::string>(&value)) {
    append(text->size());
    key += *text;
  } else if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    append(*integer);
  } else if (const auto* real = std::get_if<double>(&value)) {
    append(*real);
  } else if (const auto* flag = std::get_if<bool>(&value)) {
    append(*flag);
  }
}

// Whether the database would give this value back for that one.
bool same(const Value& value, const Value& stored) {
  if (const auto* flag = std::get_if<bool>(&value)) return stored == Value(std::int64_t{*flag});
  return value == stored;
}

std::optional<Error> makePrivate(const std::string& path) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return Error{std::strerror(errno)};
  close(file);
  return std::nullopt;
}

// "a, b" and "?, ?"
struct Lists {
  std::string names;
  std::string marks;
};
Lists listsOf(const machine::Table& table, const std::vector<std::size_t>& columns) {
  Lists lists;
  for (const std::size_t column : columns) {
    lists.names += ", " + quotedName(table.columns[column]);
    lists.marks += ", ?";
  }
  return lists;
}

std::string notRecorded(const machine::Description& machine) {
  std::string names;
  for (std::size_t table = 0; table < machine::kTableCount; ++table) {
    if (machine[table].recorded) continue;
    names += (names.empty() ? "" : ", ") + std::string(machine::kTables[table].name);
  }
  return names;
}

}  // namespace

std::optional<Error> recognise(Database& database) {
  Result<Statement> query = database.prepare("PRAGMA application_id");
  if (!query || query->step() != Step::Row) {
    const bool busy = database.busy();
    return Error{busy ? "another program is writing to it" : database.problem()};
  }
  if (query->integer(0) != kApplication) {
    const bool empty = database.number("PRAGMA schema_version") == 0;
    return Error{empty ? "is empty; load makes it a database" : "is a database of something else"};
  }
  const std::int64_t version = database.number("PRAGMA user_version");
  if (version > kVersion) return Error{"was made by a newer huxutil"};
  if (version < kVersion)
    return Error{"was made by an older huxutil; load the files into a new one"};
  return std::nullopt;
}

Result<Store> Store::open(const std::string& path, const Batch& batch) {
  sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);  // counts nobody asks for; refused once it runs
  if (!path.empty()) {
    if (const auto error = makePrivate(path)) return *error;
  }
  Result<Database> database = Database::open(path, Database::Access::Write);
  if (!database) return database.error();
  Store store(std::move(*database), batch);
  if (const auto error = store.start(path.empty())) return *error;
  return store;
}

std::optional<Error> Store::start(bool temporary) {
  const char* settings = temporary ? "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;"
                                     "PRAGMA cache_size = -65536;"
                                   : "PRAGMA cache_size = -65536;";  // KiB
  if (!database_.run(settings) || !begin()) return problem_ ? problem_ : Error{database_.problem()};
  if (database_.number("PRAGMA schema_version") == 0) {
    if (!database_.run(creation())) return Error{database_.problem()};
  } else if (auto error = recognise(database_)) {
    return error;
  }
  // Made with the first load's end, unless it was killed.
  const bool hasScans = database_.number("SELECT id FROM _scans LIMIT 1") != 0;
  if (hasScans && !database_.run(indexing())) return Error{database_.problem()};
  if (!commit()) return problem_;
  seed_ = database_.number("SELECT seed FROM _seed");
  Statement digests = compile("SELECT digest FROM _scans ORDER BY digest");
  while (!problem_ && digests.step() == Step::Row) known_.emplace_back(digests.text(0));
  compileAll();
  return problem_;
}

Statement Store::compile(const std::string& sql) {
  Result<Statement> statement = database_.prepare(sql);
  if (statement) return std::move(*statement);
  if (!problem_) problem_ = statement.error();
  return {};
}

void Store::compileAll() {
  findDigest_ = compile("SELECT id FROM _scans WHERE digest = ?");
  readFile_ = compile("SELECT bytes FROM _files WHERE scan = ?");
  findLatest_ = compile("SELECT id, scanned_unix FROM _scans WHERE owner = ? AND latest");
  outdate_ = compile("UPDATE _scans SET latest = 0 WHERE id = ?");
  insertScan_ = compile(
      "INSERT INTO _scans (digest, file, owner, serial, scanned_at, scanned_unix, source,"
      " not_recorded, latest) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  insertFile_ = compile("INSERT INTO _files VALUES (?, ?)");
  for (std::size_t i = 0; i < kStoredCount; ++i) {
    const machine::Table& table = storedTable(i);
    const std::string name = "_" + std::string(table.name);
    const Lists shared = listsOf(table, splitOf(i).shared);
    const Lists own = listsOf(table, splitOf(i).own);
    writers_[i].find =
        compile("SELECT _id" + shared.names + " FROM " + name + "_rows WHERE _hash = ?");
    writers_[i].insert = compile("INSERT INTO " + name + "_rows (_hash" + shared.names +
                                 ") VALUES (?" + shared.marks + ")");
    writers_[i].links = compile("SELECT _row FROM " + name + "_links WHERE _id BETWEEN ? AND ?");
    writers_[i].count = compile("UPDATE " + name + "_rows SET _now = _now + ? WHERE _id = ?");
    writers_[i].link = compile("INSERT INTO " + name + "_links (_id, _row" + own.names +
                               ") VALUES (?, ?" + own.marks + ")");
  }
}

Store::Prepared Store::prepare(Scan scan) const {
  Prepared prepared{std::move(scan), {}, {}};
  for (const inspect::Finding& finding : prepared.scan.findings) {
    prepared.findings.push_back(rowOf(finding));
  }
  for (std::size_t table = 0; table < kStoredCount; ++table) {
    auto& [bytes, keys] = prepared.keys[table];
    keys.reserve(prepared.rows(table).size());
    for (const Row& row : prepared.rows(table)) {
      const std::size_t start = bytes.size();
      for (const std::size_t column : splitOf(table).shared) appendKey(bytes, row[column]);
      const auto seed = static_cast<std::uint64_t>(seed_);
      const std::size_t size = bytes.size() - start;
      keys.push_back({XXH3_64bits_withSeed(bytes.data() + start, size, seed), bytes.size()});
    }
  }
  return prepared;
}

bool Store::mayKnow(const Digest& digest) const {
  return std::ranges::binary_search(known_, digest);
}

bool Store::knows(const Digest& digest, std::string_view bytes) {
  findDigest_.bind(1, std::string_view(digest));
  bool found = false;
  while (!found && findDigest_.step() == Step::Row) {
    readFile_.bind(1, findDigest_.integer(0));
    while (readFile_.step() == Step::Row) found = found || readFile_.bytes(0) == bytes;
  }
  if (found) findDigest_.reset();
  return found;
}

bool Store::fail() {
  if (!problem_) {
    problem_ = Error{database_.busy() ? "another program is writing to it" : database_.problem()};
  }
  return false;
}

bool Store::run(Statement& statement) {
  return !problem_ && (statement.step() == Step::Done || fail());
}

bool Store::begin() {
  if (problem_) return false;
  if (inBatch_) return true;
  if (!database_.run("BEGIN IMMEDIATE")) return fail();
  inBatch_ = true;
  batchBytes_ = 0;
  batchBegan_ = std::chrono::steady_clock::now();
  return true;
}

bool Store::finish() {
  if (!begin() || !database_.run(indexing())) return fail();
  return commit();
}

bool Store::commit() {
  if (problem_ || !inBatch_) return !problem_;
  keepCounts();
  inBatch_ = false;
  return !problem_ && (database_.run("COMMIT") || fail());
}

void Store::keepCounts() {
  for (Writer& writer : writers_) {
    for (const auto& [row, more] : writer.counted) {
      if (more == 0) continue;  // most of a machine's rows, when it is scanned again
      writer.count.bind(1, more);
      writer.count.bind(2, row);
      run(writer.count);
    }
    writer.counted.clear();
  }
}

// By the instant, not by the text, which may be of any time zone; of equal ones the later that
// came. Who tells no time is oldest; who does not say which machine it is, is one of its own.
bool Store::becomesLatest(const Scan& scan) {
  if (!machine::isKnown(scan.owner)) return true;
  findLatest_.bind(1, scan.owner);
  if (findLatest_.step() != Step::Row) return true;
  const std::int64_t id = findLatest_.integer(0);
  const Value time = findLatest_.value(1);
  findLatest_.reset();
  const bool newer =
      !machine::isKnown(time) || (scan.scannedUnix && Value(*scan.scannedUnix) >= time);
  if (newer) outdate(id);
  return newer;
}

void Store::outdate(std::int64_t scan) {
  outdate_.bind(1, scan);
  run(outdate_);
  for (Writer& writer : writers_) {
    writer.links.bind(1, scan << kPlaceBits);
    writer.links.bind(2, ((scan + 1) << kPlaceBits) - 1);
    while (writer.links.step() == Step::Row) --writer.counted[writer.links.integer(0)];
  }
}

std::int64_t Store::addScan(const Scan& scan, bool latest) {
  const auto column = [&scan](const char* name) -> const Value& {
    return scan.machine.machine(machine::columnAt("machine", name));
  };
  const std::string missing = notRecorded(scan.machine);
  insertScan_.bind(1, std::string_view(scan.digest));
  insertScan_.bind(2, std::string_view(scan.file));
  insertScan_.bind(3, scan.owner);
  insertScan_.bind(4, column("serial"));
  insertScan_.bind(5, column("scanned_at"));
  insertScan_.bind(6, scan.scannedUnix ? Value(*scan.scannedUnix) : Value());
  insertScan_.bind(7, column("source"));
  insertScan_.bind(8, std::string_view(missing));
  insertScan_.bind(9, std::int64_t{latest});
  if (!run(insertScan_)) return 0;
  const std::int64_t id = sqlite3_last_insert_rowid(database_.handle());
  insertFile_.bind(1, id);
  insertFile_.bindBytes(2, scan.bytes);
  run(insertFile_);
  return id;
}

bool Store::add(const Prepared& prepared) {
  const Scan& scan = prepared.scan;
  if (!begin() || knows(scan.digest, scan.bytes)) return false;
  const bool latest = becomesLatest(scan);
  const std::int64_t id = addScan(scan, latest);
  for (std::size_t table = 0; table < kStoredCount; ++table) addRows(table, id, latest, prepared);
  batchBytes_ += scan.bytes.size();
  const auto age = std::chrono::steady_clock::now() - batchBegan_;
  if (batchBytes_ >= batch_.bytes || age >= batch_.time) commit();
  return !problem_;
}

void Store::addRows(std::size_t table, std::int64_t scan, bool latest, const Prepared& prepared) {
  const std::vector<Row>& rows = prepared.rows(table);
  const auto& [bytes, keys] = prepared.keys[table];
  Statement& link = writers_[table].link;
  std::size_t start = 0;
  for (std::size_t i = 0; i < rows.size() && !problem_; ++i) {
    const std::string_view key = std::string_view(bytes).substr(start, keys[i].end - start);
    start = keys[i].end;
    link.bind(1, (scan << kPlaceBits) + static_cast<std::int64_t>(i));
    const std::int64_t row = rowNumber(table, rows[i], keys[i].hash, key);
    if (latest) ++writers_[table].counted[row];
    link.bind(2, row);
    int parameter = 3;
    for (const std::size_t column : splitOf(table).own) link.bind(parameter++, rows[i][column]);
    run(link);
  }
}

std::int64_t Store::rowNumber(std::size_t table, const Row& row, std::uint64_t hash,
                              std::string_view key) {
  Writer& writer = writers_[table];
  auto [at, isNew] = writer.recent.try_emplace(hash);
  if (!isNew && at->second.first == key) return at->second.second;
  std::int64_t number = findRow(table, row, hash);
  if (number == 0) {
    writer.insert.bind(1, static_cast<std::int64_t>(hash));
    int parameter = 2;
    for (const std::size_t column : splitOf(table).shared) {
      writer.insert.bind(parameter++, row[column]);
    }
    if (!run(writer.insert)) return 0;
    number = sqlite3_last_insert_rowid(database_.handle());
  }
  constexpr std::size_t kEntry = 128;  // about what the map itself takes
  remembered_ += key.size() + kEntry;
  at->second = {std::string(key), number};
  if (remembered_ > kRememberedBytes) {
    for (Writer& each : writers_) each.recent.clear();
    remembered_ = 0;
  }
  return number;
}

// 0 when there is none. Rows of one hash are told apart by their values.
std::int64_t Store::findRow(std::size_t table, const Row& row, std::uint64_t hash) {
  Statement& find = writers_[table].find;
  find.bind(1, static_cast<std::int64_t>(hash));
  std::int64_t number = 0;
  while (number == 0 && find.step() == Step::Row) {
    int at = 1;
    const bool equal = std::ranges::all_of(splitOf(table).shared, [&](std::size_t column) {
      return same(row[column], find.value(at++));
    });
    if (equal) number = find.integer(0);
  }
  if (number != 0) find.reset();
  return number;
}

}  // namespace fleet
