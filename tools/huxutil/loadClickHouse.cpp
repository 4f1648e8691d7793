#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "base/formatString.h"
#include "command.h"
#include "files.h"
#include "fleet/clickhouse.h"
#include "output.h"
#include "progress.h"
#include "show/figures.h"
#include "takeIn.h"

int loadToClickHouse(const Arguments& arguments) {
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  printOutput(fleet::clickHouseTables());
  fleet::ClickHouseInserts inserts;
  std::size_t printed = 0;
  std::size_t leftOut = 0;
  Progress progress(files.size());
  const auto leaveOut = [&](const std::string& path, const huxread::Error& error) {
    progress.clear();
    printMessage(path, error.message);
    progress.show(printed + ++leftOut);
  };
  const auto read = [&](std::size_t i) -> std::function<void()> {
    if (!outputGoesOn()) return [] {};
    auto bytes = readBytes(files[i]);
    if (!bytes) return [&, i, error = bytes.error()] { leaveOut(files[i], error); };
    const auto scan = scanOf(files[i], std::move(*bytes));
    if (!scan) return [&, i, error = scan.error()] { leaveOut(files[i], error); };
    const auto rows = std::make_shared<fleet::ClickHouseRows>(fleet::clickHouseRows(*scan));
    return [&, rows] {
      printOutput(inserts.add(*rows));
      progress.show(++printed + leftOut);
    };
  };
  forEachInOrder(files.size(), [&](std::size_t i) {
    return whileMemoryLasts(
        [&] { return read(i); },
        [&]() -> std::function<void()> { return [&, i] { leaveOut(files[i], {kNoMemory}); }; });
  });
  printOutput(inserts.finish());
  progress.clear();
  if (!files.empty() && outputGoesOn()) {
    printErrors(formatString("%s: %zu printed, %zu left out\n",
                             show::count(files.size(), "file").c_str(), printed, leftOut));
  }
  return std::max(code, leftOut > 0 ? kNo : kDone);
}
