#include <ctime>

#include "command.h"
#include "fleet/overview.h"
#include "fleet/query.h"
#include "output.h"
#include "page/fleet.h"

int runFleet(const Arguments& arguments) {
  if (arguments.database.empty()) {
    printMessage("fleet", "which? --db FILE, which load fills");
    return kTrouble;
  }
  auto database = fleet::openForReading(arguments.database);
  if (!database) {
    printMessage(arguments.database, database.error().message);
    return kTrouble;
  }
  const auto overview = fleet::overviewOf(*database, std::time(nullptr));
  if (!overview) {
    printMessage(arguments.database, overview.error().message);
    return kTrouble;
  }
  if (overview->machines == 0) {
    printMessage(arguments.database, "holds no scans; load takes them in");
    return kNo;
  }
  const std::string page = page::fleet(*overview, "huxutil " HUXUTIL_VERSION);
  if (!arguments.output.empty()) return writeFile(arguments.output, page, arguments.force);
  printOutput(page);
  return kDone;
}
