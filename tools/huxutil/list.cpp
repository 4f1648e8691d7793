#include "base/formatString.h"
#include "command.h"
#include "files.h"
#include "output.h"

int runList(const Arguments& arguments) {
  const std::string& path = arguments.file;
  const auto file = openFile(path);
  if (!file) {
    printMessage(path, file.error().message);
    return kTrouble;
  }
  printOutput(formatString("%7s  %-10s  %10s  %10s  %s\n", "section", "type", "offset", "length",
                           "timestamp"));
  for (const huxread::Section& section : file->sections()) {
    const std::string timestamp =
        section.timestamp.empty() ? "-" : show::onOneLine(section.timestamp);
    printOutput(formatString("%7u  %-10s  %10u  %10u  %s\n", section.number,
                             huxread::typeName(section.type), section.offset, section.length,
                             timestamp.c_str()));
  }
  return kDone;
}
