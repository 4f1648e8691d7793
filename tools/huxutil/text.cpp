#include "command.h"
#include "files.h"
#include "huxread/salvage.h"
#include "output.h"

using huxread::Salvaged;
using huxread::SalvagedSection;

namespace {

using Wanted = std::optional<std::string>;

// Whether a section is the one that is asked for, by its number or type; the first one is when
// nothing is asked for.
bool isWanted(std::uint32_t number, huxread::SectionType type, const Wanted& wanted) {
  return !wanted || *wanted == std::to_string(number) || *wanted == huxread::typeName(type);
}

int noSection(const std::string& path, const Wanted& wanted) {
  printMessage(path, wanted ? "has no section \"" + *wanted + "\"" : "has no sections");
  return kNo;
}

// What can be read of a damaged file. Ends with kDone when the section is whole all the same.
int salvageText(const std::string& path, const Wanted& wanted) {
  const auto bytes = readBytes(path);
  if (!bytes) {
    printMessage(path, bytes.error().message);
    return kTrouble;
  }
  const Salvaged salvaged = huxread::salvage(*bytes);
  if (salvaged.damage == Salvaged::Damage::Foreign) {
    printMessage(path, salvaged.what);
    return kTrouble;
  }
  if (!salvaged.what.empty()) printMessage(path, salvaged.what);
  for (const SalvagedSection& section : salvaged.sections) {
    if (!isWanted(section.number, section.type, wanted)) continue;
    printBytes(section.text);
    return section.complete ? kDone : kNo;
  }
  return noSection(path, wanted);
}

}  // namespace

int runText(const Arguments& arguments) {
  const std::string& path = arguments.file;
  if (arguments.salvage) return salvageText(path, arguments.section);
  const auto file = openFile(path);
  if (!file) {
    printMessage(path, file.error().message);
    return kTrouble;
  }
  for (const huxread::Section& section : file->sections()) {
    if (!isWanted(section.number, section.type, arguments.section)) continue;
    const auto text = file->text(section.number);
    if (!text) {
      printMessage(path, text.error().message);
      return kNo;
    }
    printBytes(*text);
    return kDone;
  }
  return noSection(path, arguments.section);
}
