#include <algorithm>

#include "command.h"
#include "files.h"
#include "output.h"

int runRaw(const Arguments& arguments) {
  const std::string& path = arguments.file;
  const auto file = openFile(path);
  if (!file) {
    printMessage(path, file.error().message);
    return kTrouble;
  }
  const auto section = std::ranges::find(file->sections(), huxread::SectionType::CustomData,
                                         &huxread::Section::type);
  if (section == file->sections().end()) {
    printMessage(path, "no debug file: it holds no document of the profiler");
    return kNo;
  }
  const auto document = file->text(section->number);
  if (!document) {
    printMessage(path, document.error().message);
    return kNo;
  }
  if (!arguments.output.empty()) return writeFile(arguments.output, *document, arguments.force);
  printBytes(*document);
  return kDone;
}
