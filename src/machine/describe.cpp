#include "machine/describe.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "base/formatString.h"
#include "huxread/document.h"
#include "machine/profiler/profile.h"
#include "machine/profiler/tables.h"
#include "machine/snapshot/tables.h"

namespace machine {

namespace {

using huxread::Container;
using huxread::Document;
using huxread::Error;
using huxread::Result;
using huxread::Section;
using huxread::SectionType;

using ReadProfiled = void (*)(const Profile& profile, Description& machine);
constexpr ReadProfiled kProfiled[] = {
    profiler::readProfiledMachine,  profiler::readProfiledMemory,   profiler::readProfiledStorage,
    profiler::readProfiledUsb,      profiler::readProfiledDisplays, profiler::readProfiledAdapters,
    profiler::readProfiledPrinters, profiler::readProfiledSoftware, profiler::readProfiledSettings,
    profiler::readProfiledDevices,
};

// Null when there is none.
const Section* firstOf(const Container& file, SectionType type) {
  const auto found = std::ranges::find(file.sections(), type, &Section::type);
  return found == file.sections().end() ? nullptr : &*found;
}

Error about(const Section& section, const Error& error) {
  return {formatString("section %u: %s", section.number, error.message.c_str())};
}

// The text of a section as a document.
Result<Document> document(const Container& file, const Section& section) {
  auto text = file.text(section.number);
  if (!text) return text.error();
  auto parsed = Document::parse(std::move(*text));
  if (!parsed) return about(section, parsed.error());
  return parsed;
}

std::optional<Error> addSnapshot(const Container& file, const Section& section,
                                 Description& machine) {
  const auto snapshot = document(file, section);
  if (!snapshot) return snapshot.error();
  readSnapshot(*snapshot, machine);
  return std::nullopt;
}

std::optional<Error> addProfile(const Container& file, const Section& section, platform::Host& host,
                                Description& machine) {
  const auto text = file.text(section.number);
  if (!text) return text.error();
  const auto profile = Profile::open(*text, host);
  if (!profile) return about(section, profile.error());
  for (const ReadProfiled read : kProfiled) read(*profile, machine);
  if (profile->unreadable() > 0 || profile->cutOff()) machine.setLacksItems();
  return std::nullopt;
}

// What the asset record says.
Result<Description> describeAsset(const Container& file) {
  const bool snapshot = firstOf(file, SectionType::Snapshot) != nullptr;
  if (!snapshot && firstOf(file, SectionType::CustomData) == nullptr) {
    return Error{"holds neither a snapshot nor a profiler's document"};
  }
  Description machine(snapshot ? Source::Snapshot : Source::Debug);
  if (const Section* section = firstOf(file, SectionType::AssetInfo)) {
    const auto asset = document(file, *section);
    if (!asset) return asset.error();
    readAsset(*asset, machine);
  }
  return machine;
}

}  // namespace

Result<Description> describe(const Container& file, platform::Host& host,
                             const Document* snapshot) {
  Result<Description> described = describeAsset(file);
  if (!described) return described;
  Description& machine = *described;
  const bool isSnapshot = machine.source() == Source::Snapshot;
  std::optional<Error> failure;
  if (isSnapshot && snapshot != nullptr) {
    readSnapshot(*snapshot, machine);
  } else if (isSnapshot) {
    failure = addSnapshot(file, *firstOf(file, SectionType::Snapshot), machine);
  } else {
    failure = addProfile(file, *firstOf(file, SectionType::CustomData), host, machine);
  }
  if (failure) return *failure;
  TableData& table = machine[tableAt("machine")];
  table.recorded = true;
  if (table.rows.empty()) table.rows.emplace_back(kTables[tableAt("machine")].columns.size());
  table.rows.front()[columnAt("machine", "source")] = isSnapshot ? "snapshot" : "debug";
  return described;
}

Result<Description> identify(const Container& file, platform::Host& host) {
  Result<Description> asset = describeAsset(file);
  const bool named = !asset || isKnown(asset->machine(columnAt("machine", "serial"))) ||
                     isKnown(asset->machine(columnAt("machine", "uuid")));
  return named ? std::move(asset) : describe(file, host);
}

}  // namespace machine
