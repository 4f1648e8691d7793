#include "inspect/findings.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>

#include "base/formatString.h"
#include "base/text.h"

namespace inspect {

namespace {

using machine::columnAt;
using machine::Description;
using machine::isKnown;
using machine::Row;
using machine::tableAt;
using machine::TableData;
using machine::textOf;
using machine::Value;

constexpr FindingKind kKinds[] = {
    {"HUX001", Severity::Damage,     "The file is cut off"                             },
    {"HUX002", Severity::Damage,     "The header is damaged"                           },
    {"HUX003", Severity::Damage,     "A section cannot be inflated"                    },
    {"HUX004", Severity::Damage,     "A section is no document"                        },
    {"HUX005", Severity::Remark,     "A section is of a type that is not known"        },
    {"HUX006", Severity::Damage,     "The file describes no machine"                   },
    {"HUX007", Severity::Damage,     "Items of the report cannot be read"              },
    {"HUX101", Severity::Incomplete, "The hardware is missing"                         },
    {"HUX102", Severity::Incomplete, "The system is missing"                           },
    {"HUX103", Severity::Incomplete, "The processor is missing"                        },
    {"HUX104", Severity::Incomplete, "The memory is missing"                           },
    {"HUX105", Severity::Incomplete, "There is no storage"                             },
    {"HUX106", Severity::Incomplete, "There is no network"                             },
    {"HUX107", Severity::Incomplete, "There is no software"                            },
    {"HUX108", Severity::Incomplete, "The serial number is empty"                      },
    {"HUX109", Severity::Incomplete, "The hardware UUID is empty"                      },
    {"HUX110", Severity::Incomplete, "No hardware address identifies the machine"      },
    {"HUX201", Severity::Remark,     "The firewall is off"                             },
    {"HUX202", Severity::Remark,     "A disk is failing"                               },
    {"HUX203", Severity::Remark,     "The environment holds secrets"                   },
    {"HUX204", Severity::Remark,     "A volume is nearly full"                         },
    {"HUX205", Severity::Remark,     "The battery needs service"                       },
    {"HUX206", Severity::Remark,     "The system integrity protection is off"          },
    {"HUX207", Severity::Remark,     "A memory module does not work"                   },
    {"HUX208", Severity::Remark,     "The startup volume is not encrypted"             },
    {"HUX301", Severity::Limit,      "The snapshot names a wrong system"               },
    {"HUX302", Severity::Limit,      "The snapshot does not describe this processor"   },
    {"HUX303", Severity::Limit,      "The snapshot does not hold soldered memory"      },
    {"HUX304", Severity::Limit,      "The snapshot does not hold USB devices"          },
    {"HUX305", Severity::Limit,      "The snapshot does not hold the volumes"          },
    {"HUX306", Severity::Limit,      "The snapshot does not say where applications are"},
};

const Value& cell(const Description& machine, std::string_view column) {
  return machine.machine(columnAt("machine", column));
}

const TableData& table(const Description& machine, std::string_view name) {
  return machine[tableAt(name)];
}

bool isEmpty(const TableData& data) {
  return data.rows.empty();
}

bool isFalse(const Value& value) {
  const bool* flag = std::get_if<bool>(&value);
  return flag != nullptr && !*flag;
}

// Virtual machines and the random addresses of Wi-Fi set the second lowest bit of the first byte
// (IEEE 802): such an address may be another one tomorrow.
bool isLocallyAdministered(std::string_view address) {
  const unsigned long first = std::strtoul(std::string(address.substr(0, 2)).c_str(), nullptr, 16);
  return (first & 2U) != 0;
}

// The first part of a version: 14 of "14.5".
long majorOf(std::string_view version) {
  return std::strtol(std::string(version).c_str(), nullptr, 10);
}

bool isNamedLikeASecret(std::string_view variable) {
  constexpr std::string_view kWords[] = {"PASSWORD",    "PASSWD",     "PASSPHRASE", "SECRET",
                                         "TOKEN",       "API_KEY",    "APIKEY",     "ACCESS_KEY",
                                         "PRIVATE_KEY", "CREDENTIAL", "AUTH_KEY"};
  const std::string name = toUpper(variable);
  return std::ranges::any_of(
      kWords, [&name](std::string_view word) { return name.find(word) != std::string::npos; });
}

class Remarks {
 public:
  explicit Remarks(const Description& machine) : machine_(machine) {}

  std::vector<Finding> all() {
    if (machine_.lacksItems()) {
      add("HUX007", "items of the profiler's report cannot be read: what they tell is missing");
    }
    checkSettings();
    checkDisks();
    checkVolumes();
    checkMemory();
    checkBattery();
    checkEnvironment();
    if (machine_.source() == machine::Source::Snapshot) checkLimits();
    return std::move(findings_);
  }

 private:
  void add(std::string_view id, std::string text) {
    findings_.push_back(finding(id, std::move(text)));
  }

  // `which`: its name; may be "".
  void add(std::string_view id, const std::string& text, std::string_view which) {
    add(id, which.empty() ? text : text + ": " + std::string(which));
  }

  void checkSettings() {
    for (const Row& row : table(machine_, "firewall").rows) {
      if (textOf(row[columnAt("firewall", "kind")]) == "global" &&
          textOf(row[columnAt("firewall", "name")]) == "mode" &&
          textOf(row[columnAt("firewall", "setting")]) == "allow_all") {
        add("HUX201", "the firewall is off");
      }
    }
    if (isFalse(cell(machine_, "integrity_protection"))) {
      add("HUX206", "the system integrity protection is off");
    }
  }

  void checkDisks() {
    for (const Row& row : table(machine_, "disks").rows) {
      if (textOf(row[columnAt("disks", "health")]) != "failing") continue;
      add("HUX202", "a disk is failing", textOf(row[columnAt("disks", "model")]));
    }
  }

  void checkVolumes() {
    std::set<std::string_view> containers;  // told of: their volumes share what is free
    for (const Row& row : table(machine_, "volumes").rows) {
      const std::string_view name = textOf(row[columnAt("volumes", "name")]);
      const std::string_view container = textOf(row[columnAt("volumes", "container")]);
      const bool startup = textOf(row[columnAt("volumes", "mount_point")]) == "/";
      if (isNearlyFull(row) && (container.empty() || containers.insert(container).second)) {
        add("HUX204", "a volume is nearly full", name);
      }
      if (startup && isFalse(row[columnAt("volumes", "encrypted")])) {
        add("HUX208", "the startup volume is not encrypted", name);
      }
    }
  }

  void checkMemory() {
    for (const Row& row : table(machine_, "memory").rows) {
      if (!isBroken(row)) continue;
      add("HUX207", "a memory module does not work", textOf(row[columnAt("memory", "slot")]));
    }
  }

  void checkBattery() {
    for (const Row& row : table(machine_, "battery").rows) {
      const std::string condition = toLower(textOf(row[columnAt("battery", "condition")]));
      if (condition.empty() || condition == "good" || condition == "normal") continue;
      add("HUX205", "the battery needs service: " +
                        std::string(textOf(row[columnAt("battery", "condition")])));
    }
  }

  // By name alone: a value is never repeated.
  void checkEnvironment() {
    std::string names;
    for (const Row& row : table(machine_, "environment").rows) {
      const std::string_view name = textOf(row[columnAt("environment", "name")]);
      if (!isNamedLikeASecret(name)) continue;
      if (!names.empty()) names += ", ";
      names += name;
    }
    if (!names.empty()) add("HUX203", "the environment holds secrets: " + names);
  }

  void checkLimits() {
    const bool isArm = textOf(cell(machine_, "architecture")) == "arm64";
    const long major = majorOf(textOf(cell(machine_, "os_version")));
    if (major >= 11) {
      add("HUX301", "the snapshot's own name of the system is wrong from macOS 11 on; it is " +
                        std::string(textOf(cell(machine_, "os_name"))) + " " +
                        std::string(textOf(cell(machine_, "os_version"))));
    }
    if (isArm && !isKnown(cell(machine_, "cores"))) {
      add("HUX302", "cores and clock of Apple silicon are in a debug file only");
    }
    if (isArm && !table(machine_, "memory").recorded) {
      add("HUX303", "kind and maker of soldered memory are in a debug file only");
    }
    if (major >= 26 && !table(machine_, "usb").recorded) {
      add("HUX304", "USB devices are in a debug file only, from macOS 26 on");
    }
    if (!table(machine_, "volumes").recorded) {
      add("HUX305", "volumes are in a debug file only");
    }
    const std::vector<Row>& software = table(machine_, "software").rows;
    const auto hasPath = [](const Row& row) { return isKnown(row[columnAt("software", "path")]); };
    if (!software.empty() && std::ranges::none_of(software, hasPath)) {
      add("HUX306", "paths, signers and origins of applications are in a debug file only");
    }
  }

  const Description& machine_;
  std::vector<Finding> findings_;
};

}  // namespace

const char* severityName(Severity severity) {
  constexpr const char* kNames[] = {"damage", "incomplete", "remark", "limit"};
  return kNames[static_cast<std::size_t>(severity)];
}

std::span<const FindingKind> findingKinds() {
  return kKinds;
}

Finding finding(std::string_view id, std::string text) {
  return {std::ranges::find(kKinds, id, &FindingKind::id), std::move(text)};
}

std::vector<Finding> findGaps(const Description& machine) {
  struct Gap {
    std::string_view id;
    const char* column;  // of the machine
    const char* text;
  };
  constexpr Gap kColumns[] = {
      {"HUX101", "model_id",   "no model of the machine" },
      {"HUX102", "os_version", "no version of the system"},
      {"HUX103", "chip",       "no processor"            },
      {"HUX104", "memory_mb",  "no amount of memory"     },
      {"HUX108", "serial",     "no serial number"        },
      {"HUX109", "uuid",       "no hardware UUID"        },
  };
  struct Missing {
    std::string_view id;
    std::string_view table;
    const char* text;
  };
  constexpr Missing kMissing[] = {
      {"HUX105", "disks",    "no disk"           },
      {"HUX106", "adapters", "no network service"},
      {"HUX107", "software", "no application"    },
  };
  std::vector<Finding> gaps;
  for (const Gap& gap : kColumns) {
    if (!isKnown(cell(machine, gap.column))) gaps.push_back(finding(gap.id, gap.text));
  }
  for (const Missing& missing : kMissing) {
    if (isEmpty(table(machine, missing.table))) gaps.push_back(finding(missing.id, missing.text));
  }
  const std::string_view address = textOf(cell(machine, "mac_address"));
  if (address.empty()) {
    gaps.push_back(finding("HUX110", "no hardware address"));
  } else if (isLocallyAdministered(address)) {
    gaps.push_back(
        finding("HUX110", "the hardware address is locally administered: it may change"));
  }
  std::ranges::sort(gaps, {}, [](const Finding& gap) { return gap.kind->id; });
  return gaps;
}

std::vector<Finding> findRemarks(const Description& machine) {
  return Remarks(machine).all();
}

bool isBroken(const Row& module) {
  const std::string_view status = textOf(module[columnAt("memory", "status")]);
  return !status.empty() && status != "ok" && status != "empty";
}

bool isNearlyFull(const Row& volume) {
  constexpr double kNearlyFull = 0.05;  // what is free of the whole
  const auto* size = std::get_if<std::int64_t>(&volume[columnAt("volumes", "size_bytes")]);
  const auto* free = std::get_if<std::int64_t>(&volume[columnAt("volumes", "free_bytes")]);
  const bool startup = textOf(volume[columnAt("volumes", "mount_point")]) == "/";
  const bool writable = !isFalse(volume[columnAt("volumes", "writable")]) || startup;
  return size != nullptr && free != nullptr && *size > 0 && writable &&
         static_cast<double>(*free) < kNearlyFull * static_cast<double>(*size);
}

}  // namespace inspect
