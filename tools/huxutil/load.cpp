#include <algorithm>

#include "base/formatString.h"
#include "command.h"
#include "files.h"
#include "output.h"
#include "show/figures.h"
#include "takeIn.h"

int runLoad(const Arguments& arguments) {
  const bool toClickHouse = arguments.engine == "clickhouse";
  if (arguments.database.empty() ? !toClickHouse : !arguments.engine.empty()) {
    printMessage("load", "where to? --db FILE or --to clickhouse");
    return kTrouble;
  }
  if (toClickHouse) return loadToClickHouse(arguments);
  if (arguments.files.empty()) {
    printMessage("load", "which files?");
    return kTrouble;
  }
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  if (files.empty()) return code;  // what was wrong is said
  auto store = fleet::Store::open(arguments.database);
  if (!store) {
    printMessage(arguments.database, store.error().message);
    return kTrouble;
  }
  const Taken taken = takeIn(files, *store);
  if (const auto& problem = store->problem()) {
    printMessage(arguments.database, problem->message + "; what was not loaded can be once more");
    return kTrouble;
  }
  printOutput(formatString("%s: %zu new, %zu known already, %zu left out\n",
                           show::count(files.size(), "file").c_str(), taken.added, taken.known,
                           taken.leftOut));
  return std::max(code, taken.leftOut > 0 ? kNo : kDone);
}
