#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "machine/cleanText.h"
#include "machine/marketing.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"
#include "machine/quantity.h"
#include "machine/words.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kTable = tableAt("machine");

constexpr std::size_t at(std::string_view column) {
  return columnAt("machine", column);
}

Value upperCase(const PropertyList& value) {
  const Value known = text(value);
  return textValue(toUpper(textOf(known)));
}

Value chipName(const PropertyList& value) {
  return statedValue(oneBlank(textOf(text(value))));
}

// "up 3:14:15:09", days, hours, minutes, seconds.
Value uptime(const PropertyList& value) {
  if (value.text() == nullptr) return {};
  std::string_view rest = *value.text();
  if (!rest.starts_with("up ")) return {};
  rest.remove_prefix(3);
  constexpr std::array<std::int64_t, 4> kUnits = {86400, 3600, 60, 1};
  std::int64_t seconds = 0;
  for (std::size_t i = 0; i < kUnits.size(); ++i) {
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    const std::optional<std::int64_t> number = wholeNumber(rest.substr(0, colon));
    constexpr std::int64_t kMost = 1'000'000;  // days, far beyond any
    if (!number || *number < 0 || *number > kMost) return {};
    seconds += *number * kUnits[i];
    if ((colon == rest.size()) != (i + 1 == kUnits.size())) return {};
    if (colon < rest.size()) rest.remove_prefix(colon + 1);
  }
  return seconds;
}

constexpr Line kHardwareLines[] = {
    {"serial",          {"serial_number"},                                                stated   },
    {"uuid",            {"platform_UUID"},                                                upperCase},
    {"model_id",        {"machine_model"},                                                stated   },
    {"model_name",      {"machine_name"},                                                 stated   },
    {"model_number",    {"model_number"},                                                 stated   },
    {"chip",            {"chip_type", "cpu_type"},                                        chipName },
    {"packages",        {"packages"},                                                     integer  },
    {"cores",           {"number_processors", "number_cpus"},                             integer  },
    {"clock_mhz",       {"current_processor_speed", "cpu_speed"},                         clock    },
    {"l2_cache_kb",     {"l2_cache", "l2_cache_core", "l2_cache_size", "l2_cache_share"}, kilobytes},
    {"l3_cache_kb",     {"l3_cache"},                                                     kilobytes},
    {"memory_mb",       {"physical_memory"},                                              megabytes},
    {"firmware",        {"boot_rom_version"},                                             stated   },
    {"activation_lock", {"activation_lock_status"},                                       flag     },
};
constexpr auto kHardware = cells("machine", kHardwareLines);

constexpr Line kSoftwareLines[] = {
    {"name",                 {"local_host_name"},  text  },
    {"kernel",               {"kernel_version"},   text  },
    {"integrity_protection", {"system_integrity"}, flag  },
    {"boot_volume",          {"boot_volume"},      text  },
    {"uptime_seconds",       {"uptime"},           uptime},
};
constexpr auto kSoftware = cells("machine", kSoftwareLines);

// "proc 8:4:4": all cores, performance and efficiency; with a fourth number, from macOS 26 on, the
// super ones stand before these two.
void writeCoreKinds(std::string_view processors, Row& row) {
  if (!processors.starts_with("proc ")) return;
  processors.remove_prefix(5);
  std::vector<std::int64_t> numbers;
  for (bool more = true; more;) {
    const std::size_t colon = processors.find(':');
    const std::optional<std::int64_t> number = wholeNumber(processors.substr(0, colon));
    if (!number || *number < 0 || numbers.size() == 4) return;
    numbers.push_back(*number);
    more = colon != std::string_view::npos;
    if (more) processors.remove_prefix(colon + 1);
  }
  row[at("cores")] = numbers.front();
  if (numbers.size() < 3) return;
  row[at("efficiency_cores")] = numbers.back();
  row[at("performance_cores")] = numbers[numbers.size() - 2];
  if (numbers.size() == 4) row[at("super_cores")] = numbers[1];
}

// A Mac with Apple's own processors says "Apple" in their name. With Intel's, systems up to 10.7
// say whether they run as 64-bit.
void writeArchitecture(const PropertyList& software, Row& row) {
  const std::string_view chip = textOf(row[at("chip")]);
  const auto has = [&](std::string_view word) { return chip.find(word) != std::string_view::npos; };
  if (has("Apple")) {
    row[at("architecture")] = "arm64";
  } else if (has("PowerPC")) {
    row[at("architecture")] = "ppc";
  } else if (has("Intel")) {
    const bool half = flagIn(software, "64bit_kernel_and_kexts") == false;
    row[at("architecture")] = half ? "i386" : "x86_64";
  }
}

// "macOS 14.5 (23F79)", "Mac OS X Server 10.6.8 (10K549)", "macOS 13.4.1 (c) (22F770820d)".
void writeSystem(std::string_view system, Row& row) {
  const std::size_t version = system.find_first_of("0123456789");
  const std::size_t build = system.rfind(" (");
  if (version == std::string_view::npos || build == std::string_view::npos || build < version ||
      !system.ends_with(')')) {
    row[at("os_name")] = textValue(system);
    return;
  }
  const std::string_view number = system.substr(version, build - version);
  row[at("os_name")] = textValue(system.substr(0, version));
  row[at("os_version")] = textValue(number);
  row[at("os_build")] = textValue(system.substr(build + 2, system.size() - build - 3));
  row[at("os_marketing_name")] = textValue(marketingName(number));
}

// "Mara Kestrel (mara)".
void writeUser(std::string_view user, Row& row) {
  const std::size_t open = user.rfind('(');
  if (open == std::string_view::npos || !user.ends_with(')')) {
    row[at("user_full_name")] = textValue(user);
    return;
  }
  row[at("user_full_name")] = textValue(user.substr(0, open));
  row[at("user")] = textValue(user.substr(open + 1, user.size() - open - 2));
}

// Newer systems report the name that people gave the machine as its local host name. It is one as
// well when it has the letters that a host name may have (RFC 1123).
void writeLocalHostname(std::string_view name, Row& row) {
  if (name.ends_with(".local")) name.remove_suffix(6);
  constexpr std::string_view kLetters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-";
  if (name.find_first_not_of(kLetters) == std::string_view::npos) {
    row[at("local_hostname")] = textValue(name);
  }
}

// Nothing when it is not known: what claims to be an Intel Mac may be one or not.
Value isVirtual(const Profile& profile, const Row& row) {
  bool found = false;
  for (const char* column : {"model_id", "model_name", "chip"}) {
    found = found || namesVirtual(textOf(row[columnAt("machine", column)]));
  }
  profile.forEach("SPDisplaysDataType", [&](const PropertyList& adapter) {
    found = found || namesVirtual(textIn(adapter, "sppci_model"));
  });
  if (found) return true;
  return textOf(row[at("architecture")]) == "arm64" ? Value(false) : Value();
}

}  // namespace

void readProfiledMachine(const Profile& profile, Description& machine) {
  if (!profile.has("SPHardwareDataType") && !profile.has("SPSoftwareDataType")) return;
  Row row = emptyRow(kTable);
  profile.forEach("SPHardwareDataType", [&](const PropertyList& hardware) {
    write(kHardware, hardware, row);
    writeCoreKinds(textIn(hardware, "number_processors"), row);
    writeArchitecture(hardware, row);
  });
  profile.forEach("SPSoftwareDataType", [&](const PropertyList& software) {
    write(kSoftware, software, row);
    writeSystem(textIn(software, "os_version"), row);
    writeUser(textIn(software, "user_name"), row);
    writeLocalHostname(textIn(software, "local_host_name"), row);
    writeArchitecture(software, row);
  });
  TableData& table = machine[kTable];
  table.recorded = true;
  if (table.rows.empty()) table.rows.push_back(emptyRow(kTable));
  row[at("virtual")] = isVirtual(profile, row);
  complete(table.rows.front(), row);
}

}  // namespace machine::profiler
