#include <algorithm>
#include <optional>
#include <utility>

#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"
#include "machine/quantity.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kTable = tableAt("software");

constexpr std::size_t at(std::string_view column) {
  return columnAt("software", column);
}

constexpr Line kApplicationLines[] = {
    {"path",      {"path", "location"}, text  },
    {"name",      {"_name"},            text  },
    {"version",   {"version"},          text  },
    {"signed_by", {"signed_by"},        joined},
    {"info",      {"info"},             text  },
};
constexpr auto kApplication = cells("software", kApplicationLines);

// What "arch_kind" says, on older systems "runtime_environment". Other words name no processor:
// scripts, web applications, Java.
constexpr struct {
  std::string_view token;
  const char* architecture;
  std::optional<bool> is64Bit;
} kKinds[] = {
    {"arch_arm_i64", "universal", true        },
    {"arch_arm",     "arm64",     true        },
    {"arch_ios",     "ios",       true        },
    {"arch_i64",     "x86_64",    true        },
    {"arch_i32_i64", "x86_64",    true        },
    {"arch_i32",     "i386",      false       },
    {"arch_ppc",     "ppc",       std::nullopt},
    {"universal",    "universal", std::nullopt}, // for PowerPC and Intel
};

constexpr struct {
  std::string_view token;
  const char* origin;
} kOrigins[] = {
    {"apple",                "apple"               },
    {"mac_app_store",        "app_store"           },
    {"app_store",            "app_store"           },
    {"ios_app_store",        "app_store"           },
    {"identified_developer", "identified_developer"},
    {"unknown",              "unknown"             },
};

// Older systems say apart whether there is 64-bit code for Intel.
void writeArchitecture(const PropertyList& item, Row& row) {
  const std::string_view kind = textIn(item, "arch_kind");
  const std::string_view token = kind.empty() ? textIn(item, "runtime_environment") : kind;
  std::optional<bool> is64Bit = flagIn(item, "has64BitIntelCode");
  if (token == "arch_x86" && is64Bit) row[at("architecture")] = *is64Bit ? "x86_64" : "i386";
  for (const auto& known : kKinds) {
    if (token != known.token) continue;
    row[at("architecture")] = known.architecture;
    if (!is64Bit) is64Bit = known.is64Bit;
  }
  if (is64Bit) row[at("is_64bit")] = *is64Bit;
}

void writeOrigin(const PropertyList& item, Row& row) {
  const std::string_view token =
      flagIn(item, "app_store") == true ? "app_store" : textIn(item, "obtained_from");
  for (const auto& known : kOrigins) {
    if (token == known.token) row[at("origin")] = known.origin;
  }
}

// The time zone of the scan in seconds east of UTC, from the end of "2026-11-21T16:22:05+01:00"; 0
// when it is not known.
double zoneOf(std::string_view scannedAt) {
  constexpr std::string_view kForm = "+01:00";
  if (scannedAt.size() < kForm.size()) return 0;
  const std::string_view zone = scannedAt.substr(scannedAt.size() - kForm.size());
  const auto hours = wholeNumber(zone.substr(1, 2));
  const auto minutes = wholeNumber(zone.substr(4));
  if ((zone[0] != '+' && zone[0] != '-') || zone[3] != ':' || !hours || !minutes) return 0;
  const auto seconds = static_cast<double>(*hours * 3600 + *minutes * 60);
  return zone[0] == '-' ? -seconds : seconds;
}

}  // namespace

void readProfiledSoftware(const Profile& profile, Description& machine) {
  const double zone = zoneOf(textOf(machine.machine(columnAt("machine", "scanned_at"))));
  TableData& table = machine[kTable];
  table.recorded = profile.has("SPApplicationsDataType");
  profile.forEach("SPApplicationsDataType", [&](const PropertyList& item) {
    Row row = emptyRow(kTable);
    write(kApplication, item, row);
    writeArchitecture(item, row);
    writeOrigin(item, row);
    const PropertyList* modified = item.find("lastModified");
    if (modified != nullptr && modified->date() != nullptr) {
      const PropertyList::Date local{modified->date()->seconds + zone};
      row[at("modified_on")] = day(PropertyList(local));
    }
    if (std::ranges::any_of(row, isKnown)) table.rows.push_back(std::move(row));
  });
}

}  // namespace machine::profiler
