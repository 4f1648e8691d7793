#include "page/report.h"

#include <string_view>

#include "command.h"
#include "files.h"
#include "output.h"

namespace {

constexpr std::string_view kProgram = "huxutil " HUXUTIL_VERSION;

// Folders of whoever makes the page are nobody's business.
std::string_view nameOf(std::string_view path) {
  return path == "-" ? "standard input" : path.substr(path.rfind('/') + 1);
}

int finish(const Arguments& arguments, const std::string& page) {
  if (!arguments.output.empty()) return writeFile(arguments.output, page, arguments.force);
  printOutput(page);
  return kDone;
}

}  // namespace

int runReport(const Arguments& arguments) {
  const auto machine = describeFile(arguments.file);
  if (!machine) {
    printMessage(arguments.file, machine.error().message);
    return kTrouble;
  }
  if (!arguments.later)
    return finish(arguments, page::report(*machine, nameOf(arguments.file), kProgram));

  const auto later = describeFile(*arguments.later);
  if (!later) {
    printMessage(*arguments.later, later.error().message);
    return kTrouble;
  }
  const inspect::Comparison compared = inspect::compare(*machine, *later, {});
  if (!compared.sameMachine) {
    printMessage(*arguments.later, "is of another machine than " + arguments.file);
  }
  return finish(arguments,
                page::comparison({*machine, nameOf(arguments.file)},
                                 {*later, nameOf(*arguments.later)}, compared, kProgram));
}
