#include "show/card.h"

#include <ctime>

#include <algorithm>

#include "command.h"
#include "files.h"
#include "inspect/findings.h"
#include "output.h"

namespace {

// Damage and remarks, then gaps. Limits stay out: the card shows no wrong figure.
std::vector<std::string> findingsOf(const machine::Description& machine) {
  std::vector<std::string> shown;
  for (const inspect::Finding& remark : inspect::findRemarks(machine)) {
    if (remark.kind->severity != inspect::Severity::Limit) shown.push_back(remark.text);
  }
  for (const inspect::Finding& gap : inspect::findGaps(machine)) shown.push_back(gap.text);
  return shown;
}

}  // namespace

int runCard(const Arguments& arguments) {
  const std::string& path = arguments.file;
  const auto machine = describeFile(path);
  if (!machine) {
    printMessage(path, machine.error().message);
    return kTrouble;
  }
  printOutput(
      show::card(*machine, path, findingsOf(*machine), std::time(nullptr), outputTerminal()));
  return kDone;
}
