#include "takeIn.h"

#include <atomic>
#include <memory>
#include <utility>

#include "files.h"
#include "output.h"
#include "platform/host.h"
#include "progress.h"

using fleet::Scan;
using fleet::Store;
using huxread::Result;

namespace {

class Taking {
 public:
  Taking(const std::vector<std::string>& files, Store& store)
      : files_(files), store_(store), progress_(files.size()) {}

  Taken run() {
    forEachInOrder(files_.size(), [this](std::size_t i) {
      return whileMemoryLasts([&] { return read(files_[i]); },
                              [&]() -> std::function<void()> {
                                return [this, i] { leaveOut(files_[i], {kNoMemory}); };
                              });
    });
    store_.finish();
    return taken_;
  }

 private:
  // What needs no database; what comes back does.
  std::function<void()> read(const std::string& path) {
    if (stopped_) return [] {};
    auto bytes = readBytes(path);
    if (!bytes) return [this, path, error = bytes.error()] { leaveOut(path, error); };
    const fleet::Digest digest = fleet::digestOf(*bytes);
    if (store_.mayKnow(digest)) {
      return [this, path, digest, content = std::move(*bytes)] {
        if (store_.knows(digest, content)) {
          ++taken_.known;
          advance();
        } else {
          prepare(path, content)();
        }
      };
    }
    return prepare(path, std::move(*bytes));
  }

  std::function<void()> prepare(const std::string& path, std::string bytes) {
    auto scan = scanOf(path, std::move(bytes));
    if (!scan) return [this, path, error = scan.error()] { leaveOut(path, error); };
    const auto prepared = std::make_shared<Store::Prepared>(store_.prepare(std::move(*scan)));
    return [this, prepared] {
      const bool added = store_.add(*prepared);
      stopped_ = store_.problem().has_value();
      if (!stopped_) ++(added ? taken_.added : taken_.known);
      advance();
    };
  }

  void leaveOut(const std::string& path, const huxread::Error& error) {
    progress_.clear();
    printMessage(path, error.message);
    ++taken_.leftOut;
    advance();
  }

  void advance() { progress_.show(++done_); }

  const std::vector<std::string>& files_;
  Store& store_;
  Progress progress_;
  Taken taken_;
  std::size_t done_ = 0;
  std::atomic<bool> stopped_ = false;
};

}  // namespace

Result<Scan> scanOf(const std::string& path, std::string bytes) {
  std::string content = bytes;
  const auto file = openBytes(content);
  if (!file) return file.error();
  const auto host = platform::makeHost();
  return fleet::readScan(path, std::move(bytes), *file, *host);
}

Taken takeIn(const std::vector<std::string>& files, Store& store) {
  return Taking(files, store).run();
}
