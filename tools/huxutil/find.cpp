#include <algorithm>

#include "command.h"
#include "files.h"
#include "inspect/search.h"
#include "output.h"

// "FILE: table row: column = value"
int runFind(const Arguments& arguments) {
  if (arguments.term.empty()) {
    printMessage("find", "an empty term stands everywhere");
    return kTrouble;
  }
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  const int worst = forEachFile(files, [&](const std::string& path) {
    Outcome outcome;
    const auto machine = describeFile(path);
    if (!machine) {
      outcome.errors = message(path, machine.error().message);
      outcome.code = kTrouble;
      return outcome;
    }
    for (const inspect::Match& match : inspect::search(*machine, arguments.term)) {
      const auto& rows = (*machine)[machine::tableAt(match.table->name)].rows;
      std::string line = path + ": " + std::string(match.table->name);
      if (!match.table->single) {
        line += " " + inspect::rowTitle(*match.table, rows[match.row], match.row + 1);
      }
      line += ": " + std::string(match.column->name) + " = " + match.value;
      outcome.output += show::onOneLine(line) + "\n";
    }
    outcome.code = outcome.output.empty() ? kNo : kDone;
    return outcome;
  });
  return std::max(code, worst);
}
