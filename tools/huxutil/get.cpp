#include <algorithm>
#include <optional>

#include "command.h"
#include "files.h"
#include "huxread/document.h"
#include "inspect/lookup.h"
#include "machine/describe.h"
#include "output.h"
#include "platform/host.h"

using huxread::Container;
using huxread::Error;
using huxread::Result;

namespace {

using Values = Result<std::vector<std::string>>;

// A path may be of the inventory or of the asset record: the first document that has it answers,
// also when another one is damaged.
Values valuesAt(const Container& file, const std::string& path) {
  Values found = Error{"this file has no documents"};
  for (const huxread::Section& section : file.sections()) {
    if (section.type == huxread::SectionType::CustomData) continue;
    Result<std::string> text = file.text(section.number);
    const auto document =
        text ? huxread::Document::parse(std::move(*text)) : Result<huxread::Document>(text.error());
    found = document ? inspect::lookUpPath(*document, path) : Values(document.error());
    if (found) break;
  }
  return found;
}

}  // namespace

int runGet(const Arguments& arguments) {
  const std::string& path = arguments.file;
  const Result<Container> file = openFile(path);
  if (!file) {
    printMessage(path, file.error().message);
    return kTrouble;
  }
  const auto host = platform::makeHost();
  std::optional<Result<machine::Description>> described;  // paths need none
  int code = kDone;
  for (const std::string& name : arguments.names) {
    const bool isPath = name.starts_with('/');
    if (!isPath && !described) described = machine::describe(*file, *host);
    const Values values = isPath       ? valuesAt(*file, name)
                          : *described ? inspect::lookUp(**described, name)
                                       : Values(described->error());
    if (!values) {
      printMessage(path, name + ": " + values.error().message);
      code = std::max(code, kNo);
      continue;
    }
    for (const std::string& value : *values) printOutput(show::onOneLine(value) + "\n");
  }
  return code;
}
