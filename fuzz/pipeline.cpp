#include "postprocess/pipeline.h"

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "asset/assetInfo.h"
#include "collect/dates.h"
#include "collect/hostFacts.h"
#include "collect/plistToTags.h"
#include "collect/processes.h"
#include "fuzz/fuzzers.h"
#include "fuzz/profileNotation.h"
#include "fuzz/readBack.h"
#include "machine/describe.h"
#include "support/fakeHost.h"

namespace {

// A Mac whose commands print what stands behind their names:
//
//   $ system_profiler
//   {
//   _dataType=SPHardwareDataType
//   $ ls
//   mara
class PlayedMac : public FakeHost {
 public:
  explicit PlayedMac(const std::string& input) {
    for (std::size_t at = 0; at < input.size();) {
      const std::size_t next = std::min(input.find("\n$ ", at), input.size() - 1) + 1;
      const std::string part = input.substr(at, next - at);
      const std::size_t line = part.find('\n');
      if (part.starts_with("$ ") && line != std::string::npos) {
        parts_[part.substr(2, line - 2)] = part.substr(line + 1);
      }
      at = next;
    }
    processes = {
        {0, 0, "kernel" },
        {1, 0, "launchd"},
        {7, 1, name     }
    };
    const std::string folder = "/Library/Internet Plug-Ins";
    const auto list = parsePropertyList(fuzz::propertyListOf(parts_["plug-ins"]));
    for (std::size_t i = 0; list && list->at(i) != nullptr; ++i)
      bundleFolders[folder].push_back({folder + "/a.plugin", "a.plugin", *list->at(i)});
  }

  std::optional<platform::PropertyList> profile() {
    return parsePropertyList(fuzz::propertyListOf(parts_["system_profiler"]));
  }

  std::unique_ptr<platform::CommandOutput> startCommand(const std::string& command) override {
    const std::string tool = command.substr(0, command.find(' '));
    const bool quoted = tool == "dscl" || tool == "ioreg" || tool == "ps";
    fuzz::expect(command.find_first_of(quoted ? "`\n" : "`\n\"'$;&|<>()*") == std::string::npos,
                 "no text of the profile tells the shell anything");
    outputs[command] = parts_[tool];
    return FakeHost::startCommand(command);
  }

 private:
  std::map<std::string, std::string> parts_;
};

}  // namespace

// What a Mac says, through all that the agent does with it, to the file and back: whatever it was,
// that file can be read, and says of a machine what was written.
bool fuzz::pipeline(const std::string& input) {
  PlayedMac host(input);
  auto profile = host.profile();
  if (!profile) return false;
  AssetFacts facts;
  facts.host = collectSoftwareHardwareFacts(host, *profile);
  facts.network = collectNetworkFacts(*profile, "");
  facts.serialNumber = serialNumber(*profile);
  facts.timestamp = formatNow(host, TimestampForm::Long);
  kevaDoc raw(true, "Macintosh");
  convertProfile(host, std::move(*profile), raw);
  collectProcesses(host, raw);
  auto snapshot = std::make_unique<kevaDoc>(true, "Snapshot");
  try {
    PostProcess(*snapshot, raw, host, false);
  } catch (const std::out_of_range&) {
    return false;  // memory or caches of a size that is none
  }
  HUXfile file(true);
  auto asset = buildAssetInfo(facts, *snapshot, true);
  file.addDocument(std::move(snapshot), HUXfile::SectionType::Snapshot, false, true);
  file.addDocument(std::move(asset), HUXfile::SectionType::AssetInfo, false, true);
  const huxread::Container container = readBack(file);
  expect(static_cast<bool>(machine::describe(container, host)), "it describes a machine");
  return true;
}
