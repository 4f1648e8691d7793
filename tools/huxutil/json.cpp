#include "show/json.h"

#include <algorithm>

#include "command.h"
#include "files.h"
#include "output.h"

// A single file for people, several as JSON Lines.
int runJson(const Arguments& arguments) {
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  const bool single = files.size() == 1 && arguments.files.size() == 1 && files == arguments.files;
  const auto layout = single ? show::JsonLayout::Lines : show::JsonLayout::Compact;
  const int worst = forEachFile(files, [layout](const std::string& path) {
    const auto machine = describeFile(path);
    if (!machine) return Outcome{"", message(path, machine.error().message), kTrouble};
    return Outcome{show::json(*machine, path, layout), "", kDone};
  });
  return std::max(code, worst);
}
