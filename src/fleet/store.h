#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "fleet/database.h"
#include "fleet/scan.h"
#include "fleet/tables.h"
#include "huxread/result.h"

namespace fleet {

// The writing side of the database of a fleet. What was taken in is there after `finish`, and after
// every batch before; a program that is killed leaves whole batches. One thread at a time uses it.
class Store {
 public:
  // A batch ends when it has taken so long or so much. A longer one is not faster, and another
  // program that waits, or a kill, costs what is in it.
  struct Batch {
    std::chrono::milliseconds time = std::chrono::seconds(2);
    std::size_t bytes = std::size_t{256} << 20;
  };

  // Opens a database or makes a new one, for its owner's eyes only; "" makes one that goes with
  // the store. Waits up to a minute for another program that is writing. Fails, in words, when the
  // file is no database, or one of something else or of another version of the program.
  static huxread::Result<Store> open(const std::string& path) { return open(path, Batch()); }
  static huxread::Result<Store> open(const std::string& path, const Batch& batch);

  // Of a scan what takes the longest and needs no database.
  struct Prepared {
    Scan scan;
    struct Key {  // of a row: the same bytes for equal rows only
      std::uint64_t hash;
      std::size_t end;  // in the bytes of all
    };
    struct Keys {
      std::string bytes;  // of one after the other
      std::vector<Key> keys;
    };
    std::array<Keys, kStoredCount> keys;
    std::vector<machine::Row> findings;

    const std::vector<machine::Row>& rows(std::size_t table) const {
      return table < machine::kTableCount ? scan.machine[table].rows : findings;
    }
  };
  Prepared prepare(Scan scan) const;  // on any thread

  // Whether the database, when it was opened, had a file of that digest. Another file may have it
  // too. On any thread.
  bool mayKnow(const Digest& digest) const;

  // Whether the database has a file of that content.
  bool knows(const Digest& digest, std::string_view bytes);

  // Takes a scan in, unless its content is there: false then, and after a failure, see `problem`.
  bool add(const Prepared& prepared);

  // Ends the batch, and what makes queries fast comes to be. False after a failure.
  bool finish();

  // What failed first, in words; nothing is taken in from then on, and the batch is lost.
  const std::optional<huxread::Error>& problem() const { return problem_; }

  // To ask what was committed.
  Database& database() { return database_; }

 private:
  // Of one table.
  struct Writer {
    Statement find;    // rows by hash
    Statement insert;  // a row
    Statement link;    // a row of a scan
    Statement links;   // the rows of a scan
    Statement count;   // adds to how often latest scans have a row
    std::unordered_map<std::int64_t, std::int64_t> counted;  // what the batch adds to that, by row
    std::unordered_map<std::uint64_t, std::pair<std::string, std::int64_t>> recent;  // by hash
  };

  Store(Database database, const Batch& batch) : database_(std::move(database)), batch_(batch) {}

  std::optional<huxread::Error> start(bool temporary);
  Statement compile(const std::string& sql);
  void compileAll();
  bool begin();
  bool commit();
  bool run(Statement& statement);
  bool fail();
  std::int64_t addScan(const Scan& scan, bool latest);
  bool becomesLatest(const Scan& scan);
  void outdate(std::int64_t scan);
  void addRows(std::size_t table, std::int64_t scan, bool latest, const Prepared& prepared);
  void keepCounts();
  std::int64_t rowNumber(std::size_t table, const machine::Row& row, std::uint64_t hash,
                         std::string_view key);
  std::int64_t findRow(std::size_t table, const machine::Row& row, std::uint64_t hash);

  Database database_;
  Batch batch_;
  std::int64_t seed_ = 0;
  std::vector<std::string> known_;  // digests, sorted
  std::array<Writer, kStoredCount> writers_;
  Statement findDigest_;
  Statement readFile_;
  Statement findLatest_;
  Statement outdate_;
  Statement insertScan_;
  Statement insertFile_;
  std::size_t remembered_ = 0;  // bytes of the recent rows
  bool inBatch_ = false;
  std::size_t batchBytes_ = 0;
  std::chrono::steady_clock::time_point batchBegan_;
  std::optional<huxread::Error> problem_;
};

// What an existing database of a fleet is; an error, in words, for any other file.
std::optional<huxread::Error> recognise(Database& database);

}  // namespace fleet
