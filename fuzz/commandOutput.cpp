#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "asset/assetInfo.h"
#include "collect/hostFacts.h"
#include "collect/processes.h"
#include "fuzz/fuzzers.h"
#include "fuzz/readBack.h"
#include "postprocess/environment.h"
#include "postprocess/processList.h"
#include "postprocess/usb.h"
#include "postprocess/userAccounts.h"
#include "support/fakeHost.h"

using fuzz::expect;

namespace {

const std::string kUser = R"(dscl . -read "/users/mara")";

void expectPart(const std::string& output, const std::optional<std::string>& text,
                const char* blanks) {
  if (!text || text->empty()) return;
  expect(output.find(*text) != std::string::npos, "what was read stands in the output");
  const bool trimmed =
      text->find_first_of(blanks) != 0 && text->find_last_of(blanks) != text->size() - 1;
  expect(trimmed, "no blanks are around it");
}

// Each reads the output of one command into the document, and says whether it is its kind.

bool readUsers(const std::string& output, kevaDoc& snapshot) {
  FakeHost host;
  host.outputs["ls -1 /Users/"] = output;
  PostProcessUserAccounts(snapshot, host);
  for (const std::string& command : host.commands) {
    if (command == "ls -1 /Users/") continue;
    const std::string_view name = std::string_view(command).substr(kUser.find("mara"));
    expect(name.find_first_of("\"$`\\") == name.size() - 1, "no name tells the shell anything");
  }
  return host.commands.size() > 1 && output.find('\n') != std::string::npos;
}

bool readUser(const std::string& output, kevaDoc& snapshot) {
  FakeHost host;
  host.outputs = {
      {"ls -1 /Users/", "mara\n"},
      {kUser,           output  }
  };
  PostProcessUserAccounts(snapshot, host);
  const auto record = parseUserRecord(output);
  if (!record) return false;
  for (const auto& text :
       {std::optional(record->name), record->fullName, record->group, record->id, record->shell}) {
    expectPart(output + "\n", text, "\n\t ");
  }
  return true;
}

bool readMedia(const std::string& output, kevaDoc&) {
  const auto name = parseMediaName(output);
  expectPart(output, name, " \n\r");
  return name.has_value();
}

bool readRegistry(const std::string& output, kevaDoc& snapshot) {
  FakeHost host;
  const std::string command =
      "ioreg -rd1 -c IOPlatformExpertDevice | awk '/IOPlatformUUID/ { split($0, line, \"\\\"\"); "
      "printf(\"%s\", line[4]); }'";
  host.outputs[command] = output;
  AssetFacts facts;
  facts.host.platformUuid = platformUuid(host);
  expect(facts.host.platformUuid == output, "the identifier is all that awk prints");
  HUXfile file(true);
  file.addDocument(buildAssetInfo(facts, snapshot, true), HUXfile::SectionType::AssetInfo, false,
                   true);
  fuzz::readBack(file);
  return !output.empty();
}

bool readProcess(const std::string& output, kevaDoc& snapshot) {
  FakeHost host;
  host.processes = {
      {7, 1, "mds"}
  };
  host.outputs["ps -p7 -o user=\"\" -o command=\"\""] = output;
  kevaDoc raw(true, "Macintosh");
  collectProcesses(host, raw);
  PostProcessProcesses(snapshot, raw);
  const auto status = parseProcessStatus(output);
  if (!status) return false;
  expect(status->user.find(' ') == std::string::npos, "a user is one word");
  for (const std::string& text : {status->user, status->commandLine})
    expectPart(output, text, " \n\r");
  return true;
}

bool readEnvironment(const std::string& output, kevaDoc& snapshot) {
  FakeHost host;
  host.outputs["env"] = output;
  PostProcessEnvironment(snapshot, host);
  std::size_t at = 0;
  for (const auto& [name, value] : parseEnvironment(output)) {
    expect(name.find_first_of("=\n") == std::string_view::npos, "a name ends before its \"=\"");
    const std::string line = std::string(name) + "=" + std::string(value) + "\n";
    at = output.find(line, at);
    expect(at != std::string::npos, "what was read are lines of the output, in their order");
    at += line.size();
  }
  return at > 0;
}

struct Command {
  char letter;
  bool (*read)(const std::string& output, kevaDoc& snapshot);
};
constexpr Command kCommands[] = {
    {'l', readUsers      }, // ls -1 /Users/
    {'d', readUser       }, // dscl
    {'m', readMedia      }, // diskutil info
    {'i', readRegistry   }, // ioreg
    {'p', readProcess    }, // ps
    {'e', readEnvironment}, // env
};

}  // namespace

// The output of a command that a scan runs, which the first byte tells. What is read of it stands
// in it, and the snapshot that it gets into can be read.
bool fuzz::commandOutput(const std::string& input) {
  if (input.empty()) return false;
  const auto* const found = std::ranges::find(kCommands, input.front(), &Command::letter);
  if (found == std::end(kCommands)) return false;
  auto snapshot = std::make_unique<kevaDoc>(true, "Snapshot");
  const bool valid = found->read(input.substr(1), *snapshot);
  HUXfile file(true);
  file.addDocument(std::move(snapshot), HUXfile::SectionType::Snapshot, false, true);
  readBack(file);
  return valid;
}
