#include <algorithm>
#include <optional>
#include <string>

#include "base/text.h"
#include "machine/cleanText.h"
#include "machine/marketing.h"
#include "machine/quantity.h"
#include "machine/snapshot/item.h"
#include "machine/snapshot/sections.h"
#include "machine/words.h"

namespace machine::snapshot {

namespace {

constexpr std::size_t column(std::string_view name) {
  return columnAt("machine", name);
}

constexpr Line kTopLines[] = {
    {"netbios_name",  {"hostname"},       text   },
    {"workgroup",     {"domain"},         text   },
    {"user",          {"user-name"},      text   },
    {"scan_ms",       {"scan-time"},      integer},
    {"agent_version", {"client-version"}, text   },
};
constexpr auto kTop = cells("machine", kTopLines);
constexpr Line kComputerLines[] = {
    {"model_id", {"model"}, stated},
};
constexpr auto kComputer = cells("machine", kComputerLines);
constexpr Line kChassisLines[] = {
    {"serial", {"serial"}, stated},
};
constexpr auto kChassis = cells("machine", kChassisLines);
constexpr Line kGeneralLines[] = {
    {"memory_mb", {"physical-memory"}, count},
};
constexpr auto kGeneral = cells("machine", kGeneralLines);
constexpr Line kProcessorLines[] = {
    {"cores", {"core-count"}, count},
};
constexpr auto kProcessor = cells("machine", kProcessorLines);
constexpr Line kSystemLines[] = {
    {"kernel", {"kernel"}, text},
};
constexpr auto kSystem = cells("machine", kSystemLines);

// --- the system, by its version alone: its name goes wrong from macOS 11 on

struct SystemVersion {
  std::string_view version;  // "14.5"
  std::string_view build;    // "23F79"
  std::int64_t major = 0;
  std::int64_t minor = 0;
  bool server = false;
};

bool isFrom(const SystemVersion& system, std::int64_t major, std::int64_t minor) {
  return system.major != major ? system.major > major : system.minor >= minor;
}

// "14.5 (23F79)", "13.4.1 (c) (22F770820d)"; of a server "Server 10.6.8 (10K549)".
std::optional<SystemVersion> parseVersion(std::string_view text) {
  SystemVersion system;
  system.server = text.starts_with("Server ");
  text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
  const std::size_t open = std::min(text.rfind(" ("), text.size());
  system.version = text.substr(0, open);
  if (open < text.size() && text.ends_with(')')) {
    system.build = text.substr(open + 2, text.size() - open - 3);
  }
  const std::string_view numbers = system.version.substr(0, system.version.find(' '));
  const std::size_t dot = std::min(numbers.find('.'), numbers.size());
  const auto major = wholeNumber(numbers.substr(0, dot));
  if (!major) return std::nullopt;
  system.major = *major;
  if (dot < numbers.size()) {
    const std::string_view rest = numbers.substr(dot + 1);
    system.minor = wholeNumber(rest.substr(0, rest.find('.'))).value_or(0);
  }
  return system;
}

std::string_view systemName(const SystemVersion& system) {
  if (isFrom(system, 10, 12)) return "macOS";
  if (isFrom(system, 10, 8)) return "OS X";
  if (!isFrom(system, 10, 0)) return "";
  return system.server ? "Mac OS X Server" : "Mac OS X";
}

// Days in eight digits or more, then hours, minutes and seconds in two each:
// "00000003042709.000000:000".
Value seconds(std::string_view interval) {
  constexpr std::size_t kTime = 6;
  const std::string_view digits = interval.substr(0, interval.find('.'));
  if (digits.size() <= kTime) return {};
  const auto part = [digits](std::size_t fromEnd, std::size_t length) {
    return wholeNumber(digits.substr(digits.size() - fromEnd, length));
  };
  const auto days = wholeNumber(digits.substr(0, digits.size() - kTime));
  const auto hours = part(6, 2);
  const auto minutes = part(4, 2);
  const auto rest = part(2, 2);
  constexpr std::int64_t kMostDays = 1'000'000;
  if (!days || !hours || !minutes || !rest || *days < 0 || *days > kMostDays) return {};
  const std::int64_t sum = ((*days * 24 + *hours) * 60 + *minutes) * 60 + *rest;
  return sum > 0 ? Value(sum) : Value();  // all zeros: not reported
}

// --- the processor

bool isAppleChip(std::string_view name) {
  constexpr std::string_view kPrefixes[] = {"Apple M", "Apple A"};
  return std::ranges::any_of(kPrefixes, [name](std::string_view prefix) {
    return name.starts_with(prefix) && name.size() > prefix.size() && name[prefix.size()] >= '0' &&
           name[prefix.size()] <= '9';
  });
}

std::string_view firstAdapter(const TagView& top) {
  const auto adapter = find(top, {"Video", "Adapters", "video-adapter:1"});
  return adapter ? adapter->attribute("model").value_or(adapter->value()) : "";
}

// Of an Intel Mac with macOS 10.6 the snapshot knows the kernel; from 10.8 on there is one
// kind. 10.7 has both, and is taken for 64-bit.
std::string_view architecture(std::string_view model, std::string_view chip,
                              const std::optional<SystemVersion>& system, std::string_view stated) {
  if (chip.starts_with("Apple") || model.starts_with("VirtualMac")) return "arm64";
  if (chip.find("PowerPC") != std::string_view::npos) return "ppc";
  if (chip.find("Intel") == std::string_view::npos || !system) return "";
  if (isFrom(*system, 10, 8)) return "x86_64";
  if (isFrom(*system, 10, 7)) return "";
  return stated == "64-bit" ? "x86_64" : "i386";
}

// Megahertz of what was taken to be in gigahertz: 800 MHz stand there as 800000, and whole
// gigahertz may be all that was understood of "2,4 GHz".
Value clockSpeed(std::string_view stated) {
  constexpr std::int64_t kFastest = 100'000;  // MHz, beyond any processor
  const std::int64_t megahertz = wholeNumber(stated).value_or(0);
  if (megahertz >= kFastest) return megahertz / 1000;
  return megahertz > 0 && megahertz % 1000 != 0 ? Value(megahertz) : Value();
}

void readProcessors(const TagView& top, Row& row) {
  const auto processors = top.child("Processors");
  if (!processors) return;
  std::int64_t packages = 0;
  forEach(*processors, "Processor:", [&packages](const TagView&) { ++packages; });
  const auto processor = processors->child("Processor:1");
  if (!processor) return;
  write(kProcessor, *processor, row);
  row[column("clock_mhz")] = clockSpeed(processor->attribute("current-clock-speed").value_or(""));
  // One package, and one core of it, are also what it says when nothing was reported.
  const bool named = !processor->value().starts_with("CPU #");
  if (named) row[column("packages")] = packages;
  const bool one = row[column("cores")] == Value(std::int64_t{1});
  if (one && !named && !isKnown(row[column("clock_mhz")])) row[column("cores")] = {};
  // Level 2 may have been that of a core or of all, and was multiplied accordingly.
  constexpr std::int64_t kMostCache = 1 << 30;  // KB
  const auto cache = wholeNumber(processor->attribute("l3-cache-size").value_or(""));
  if (cache && *cache > 0 && *cache < kMostCache) row[column("l3_cache_kb")] = *cache * packages;
}

void readSystem(const TagView& top, Row& row) {
  const auto os = find(top, {"OS", "os:1"});
  const auto system = parseVersion(os ? os->attribute("version").value_or("") : "");
  const std::string_view stated = os ? os->attribute("architecture").value_or("") : "";
  row[column("architecture")] =
      textValue(architecture(textOf(row[column("model_id")]), chipName(top), system, stated));
  if (!os) return;
  write(kSystem, *os, row);
  row[column("uptime_seconds")] = seconds(os->attribute("uptime").value_or(""));
  if (!system) return;
  row[column("os_name")] = textValue(systemName(*system));
  row[column("os_version")] = textValue(system->version);
  row[column("os_build")] = textValue(system->build);
  row[column("os_marketing_name")] = textValue(marketingName(system->version));
}

// What is not known to be virtual may still be: an Intel model is easily claimed. Apple's chips are
// not.
Value isVirtual(std::string_view model, const TagView& top) {
  if (namesVirtual(model) || namesVirtual(firstAdapter(top))) return true;
  return !model.empty() && isAppleChip(chipName(top)) ? Value(false) : Value();
}

}  // namespace

std::string_view chipName(const TagView& top) {
  const std::string_view adapter = firstAdapter(top);
  if (isAppleChip(adapter)) return adapter;
  const auto processor = find(top, {"Processors", "Processor:1"});
  const std::string_view name = processor ? processor->value() : "";
  return name.starts_with("CPU #") ? "" : name;
}

void readMachine(const TagView& top, Description& machine) {
  Row& row = machineRow(machine);
  write(kTop, top, row);
  if (const auto computer = find(top, {"System", "Computer-system"})) {
    write(kComputer, *computer, row);
    const Value uuid = textValue(toUpper(computer->attribute("uuid").value_or("")));
    if (isKnown(uuid)) row[column("uuid")] = uuid;
  }
  if (const auto chassis = find(top, {"System", "Chassis"})) write(kChassis, *chassis, row);
  if (const auto memory = find(top, {"Memory", "General-info"})) write(kGeneral, *memory, row);
  row[column("chip")] = statedValue(oneBlank(chipName(top)));
  row[column("virtual")] = isVirtual(textOf(row[column("model_id")]), top);
  readProcessors(top, row);
  readSystem(top, row);
}

}  // namespace machine::snapshot
