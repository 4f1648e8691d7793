#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "command.h"
#include "files.h"
#include "fleet/clickhouse.h"
#include "output.h"
#include "takeIn.h"

int loadToClickHouse(const Arguments& arguments) {
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  printOutput(fleet::clickHouseTables());
  fleet::ClickHouseInserts inserts;
  const auto leaveOut = [&code](const std::string& path, const huxread::Error& error) {
    printMessage(path, error.message);
    code = std::max(code, kNo);
  };
  forEachInOrder(files.size(), [&](std::size_t i) -> std::function<void()> {
    auto bytes = readBytes(files[i]);
    if (!bytes) return [&, i, error = bytes.error()] { leaveOut(files[i], error); };
    const auto scan = scanOf(files[i], std::move(*bytes));
    if (!scan) return [&, i, error = scan.error()] { leaveOut(files[i], error); };
    const auto rows = std::make_shared<fleet::ClickHouseRows>(fleet::clickHouseRows(*scan));
    return [&, rows] { printOutput(inserts.add(*rows)); };
  });
  printOutput(inserts.finish());
  return code;
}
