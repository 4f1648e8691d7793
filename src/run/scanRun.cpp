#include "run/scanRun.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "asset/assetInfo.h"
#include "base/console.h"
#include "base/formatString.h"
#include "collect/dates.h"
#include "collect/hostFacts.h"
#include "collect/plistToTags.h"
#include "collect/processes.h"
#include "collect/profiler.h"
#include "keva/HUXfile.h"
#include "keva/kevaDoc.h"
#include "postprocess/pipeline.h"
#include "run/phaseLog.h"
#include "run/snapshotFile.h"

using platform::PropertyList;

namespace {

// A profile that is empty or cannot be parsed has no data types.
PropertyList parseProfile(platform::Host& host, std::string document) {
  std::optional<PropertyList> profile = host.parsePropertyList(std::move(document));
  if (profile && profile->array() != nullptr) return std::move(*profile);
  return PropertyList(PropertyList::Array{});
}

// Trees stay until the process ends, which gives their memory back at once: to take them down node
// by node takes as long as to build them.
template <typename Object>
Object& kept(std::unique_ptr<Object> object) {
  static auto* const objects = new std::vector<std::unique_ptr<Object>>();
  return *objects->emplace_back(std::move(object));
}

// Whole seconds from one time of the clock to another, which is earlier when the clock was set
// back; as far as 32 bits go.
std::int32_t secondsBetween(double start, double end) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<double>(std::floor(end) - std::floor(start), Limits::min(), Limits::max()));
}

// Phases I to III: what the machine says, as a raw tree and as single facts.
struct Collected {
  kevaDoc& raw;
  AssetFacts facts;
};

Collected collect(platform::Host& host, const RunOptions& options, bool silent,
                  const std::string& ipAddress, const PhaseLog& log) {
  Collected collected{kept(std::make_unique<kevaDoc>(options.containerOption != 0, "Macintosh")),
                      {}};
  AssetFacts& facts = collected.facts;
  log("I. Collecting Data....\n");
  PropertyList profile = collectProfile(host, silent);
  log("done\n");
  facts.host = collectSoftwareHardwareFacts(host, profile);
  facts.network = collectNetworkFacts(profile, ipAddress);
  facts.serialNumber = serialNumber(profile);

  log("II. Parsing Data....");
  convertProfile(host, std::move(profile), collected.raw);
  log("done\n");

  log("III. Get Data For AssetInfo....");
  log("33% ");
  log("66% ");
  collectProcesses(host, collected.raw);
  log("100% done\n");
  return collected;
}

void setTopEntries(const AssetFacts& facts, std::int32_t seconds, kevaDoc& snapshot) {
  constexpr std::int64_t kMillisecondsPerSecond = 1000;
  const std::pair<const char*, TagValue> entries[] = {
      {"/timestamp",      TagValue(facts.timestamp)                 },
      {"/scan-time",      TagValue(seconds * kMillisecondsPerSecond)},
      {"/client-version", TagValue(kClientVersion)                  },
      {"/scan-subtype",   TagValue("sstService")                    },
      {"/snaptype",       TagValue("mac:1")                         },
      {"/hostname",       TagValue(facts.network.netbiosName)       },
      {"/domain",         TagValue(facts.network.domain)            },
      {"/user-name",      TagValue(facts.host.userName)             },
      {"/ip-address",     TagValue(facts.network.ipAddress)         },
  };
  for (const auto& [path, value] : entries) snapshot.set(path, value);
}

// Phases VI and VII: names the file, saves it, says so.
void saveSnapshot(HUXfile& file, const std::string& name, const AssetFacts& facts, bool silent,
                  const PhaseLog& log) {
  const std::string image = file.buildImage(true);  // what can end the run does so without a file
  log("VI. Generating File name....");
  const std::string stem = snapshotStem(name, facts.network.macAddress);
  log("done\n");
  log("VII. Saving to file....");
  const auto [path, saved] = saveSnapshotFile(stem, image);
  if (!saved) {
    printError("Cannot create file :%s\n", path.c_str());
  } else if (silent) {
    printText(">>>%s\n", path.c_str());
  } else {
    printText("\nScan finished. Results saved to file \"%s\"\n", path.c_str());
  }
}

void normalRun(platform::Host& host, const RunOptions& options, bool silent,
               const std::string& ipAddress, const std::string& login) {
  const bool native = options.containerOption != 0;
  const PhaseLog log(options.logMode != 0);
  const double start = host.now();
  log(formatString("Agent version: %s\n", kProgramVersion).c_str());
  log("------Start Log------\n");
  auto [raw, facts] = collect(host, options, silent, ipAddress, log);

  auto snapshot = std::make_unique<kevaDoc>(native, "Snapshot");
  PostProcess(*snapshot, raw, host, options.logMode != 0);
  const double end = host.now();
  facts.computerName = host.computerName();
  facts.timestamp = formatNow(host, TimestampForm::Long);
  facts.login = login;
  setTopEntries(facts, secondsBetween(start, end), *snapshot);

  log("V. Creating AssetInfo Section....");
  auto asset = buildAssetInfo(facts, *snapshot, native);
  log("done\n");
  HUXfile& file = kept(std::make_unique<HUXfile>(native));
  file.addDocument(std::move(snapshot), HUXfile::SectionType::Snapshot, false, true);
  file.addDocument(std::move(asset), HUXfile::SectionType::AssetInfo, false, true);
  saveSnapshot(file, facts.computerName, facts, silent, log);
  log("done\n");
  log("------End Log------\n");
}

void debugRun(platform::Host& host, const RunOptions& options, bool silent,
              const std::string& ipAddress) {
  const bool native = options.containerOption != 0;
  const std::string document = collectRawProfile(host);
  AssetFacts facts;
  facts.network = collectNetworkFacts(parseProfile(host, document), ipAddress);
  facts.computerName = host.computerName();
  facts.timestamp = formatNow(host, TimestampForm::Long);
  HUXfile file(native);
  file.addDocument(buildDebugAssetInfo(facts, native), HUXfile::SectionType::AssetInfo, false,
                   true);
  file.addRawData(document);
  const std::string& netbiosName = facts.network.netbiosName;
  saveSnapshot(file, netbiosName.empty() ? facts.computerName : netbiosName, facts, silent,
               PhaseLog(false));
}

}  // namespace

void scanRun(platform::Host& host, const RunOptions& options, bool silent, bool debug,
             const std::string& ipAddress, const std::string& login) {
  if (options.skipScan != 0) return;
  if (debug) {
    debugRun(host, options, silent, ipAddress);
  } else {
    normalRun(host, options, silent, ipAddress, login);
  }
}
