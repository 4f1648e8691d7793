#include "show/csv.h"

#include <algorithm>

#include "command.h"
#include "files.h"
#include "output.h"

int runCsv(const Arguments& arguments) {
  const machine::Table* table = machine::findTable(arguments.table);
  if (table == nullptr) {
    std::string names;
    for (const machine::Table& known : machine::kTables) names += " " + std::string(known.name);
    printMessage(arguments.table, "there is no such table; there are" + names);
    return kTrouble;
  }
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  printOutput(show::csvHeader(*table));
  const int worst = forEachFile(files, [table](const std::string& path) {
    const auto machine = describeFile(path);
    if (!machine) return Outcome{"", message(path, machine.error().message), kTrouble};
    Outcome outcome{show::csvRows(*table, *machine, path), "", kDone};
    if (!(*machine)[machine::tableAt(table->name)].recorded) {
      outcome.errors = message(path, std::string(table->name) + ": not recorded in this file");
    }
    return outcome;
  });
  return std::max(code, worst);
}
