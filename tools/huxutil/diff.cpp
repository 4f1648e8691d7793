#include <utility>

#include "command.h"
#include "files.h"
#include "inspect/compare.h"
#include "output.h"
#include "show/changes.h"
#include "show/json.h"

using inspect::Comparison;
using machine::Description;

namespace {

// What makes the answer doubtful.
void warn(const Arguments& arguments, const Comparison& comparison, const Description& before,
          const Description& after) {
  if (!comparison.sameMachine) {
    printMessage(*arguments.later, "is of another machine than " + arguments.file);
  }
  for (const auto& [path, machine] :
       {std::pair(&arguments.file, &before), std::pair(&*arguments.later, &after)}) {
    if (!machine->lacksItems()) continue;
    printMessage(*path, "items of the profiler's report cannot be read and count as missing");
  }
}

std::string jsonText(const Arguments& arguments, const Comparison& comparison,
                     const Description& before, const Description& after) {
  return R"({"format":"hux-diff/1","before":{)" + show::fileMembers(before, arguments.file) +
         R"(},"after":{)" + show::fileMembers(after, *arguments.later) + R"(},"same_machine":)" +
         (comparison.sameMachine ? "true" : "false") + R"(,"changes":)" +
         show::changesArray(comparison.changes) + "}\n";
}

}  // namespace

int runDiff(const Arguments& arguments) {
  for (const std::string& name : arguments.ignored) {
    if (inspect::isInSchema(name)) continue;
    printMessage(name, "there is no such table or column");
    return kTrouble;
  }
  const auto before = describeFile(arguments.file);
  const auto after = describeFile(*arguments.later);
  if (!before) printMessage(arguments.file, before.error().message);
  if (!after) printMessage(*arguments.later, after.error().message);
  if (!before || !after) return kTrouble;
  const Comparison comparison =
      inspect::compare(*before, *after, {arguments.all, arguments.ignored});
  warn(arguments, comparison, *before, *after);
  if (arguments.json && !arguments.quiet) {
    printBytes(jsonText(arguments, comparison, *before, *after));
  } else if (!arguments.quiet) {
    const show::Terminal terminal = outputTerminal();
    printOutput(
        show::render(show::changeLines(comparison.changes), widthOf(terminal), terminal.colour));
  }
  return comparison.changes.empty() ? kDone : kNo;
}
