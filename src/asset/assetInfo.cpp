#include "asset/assetInfo.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "base/formatString.h"
#include "base/text.h"

namespace {

struct Entry {
  const char* path;
  std::string_view text;
};

void setAll(std::span<const Entry> entries, kevaDoc& asset) {
  for (const Entry& entry : entries) asset.set(entry.path, TagValue(entry.text));
}

// What both records begin with.
void setNames(const AssetFacts& facts, kevaDoc& asset) {
  const Entry entries[] = {
      {"/hostname",    facts.network.netbiosName              },
      {"/ip-address",  facts.network.ipAddress                },
      {"/static-ip",   facts.network.staticAddress ? "1" : "0"},
      {"/int-name",    facts.computerName                     },
      {"/alias",       facts.computerName                     },
      {"/description", ""                                     },
      {"/comment",     ""                                     },
      {"/inv-number",  ""                                     },
  };
  setAll(entries, asset);
}

const char* virtualType(const std::string& model) {
  constexpr std::pair<const char*, const char*> kTypes[] = {
      {"vmware",     "nvtVMware"    },
      {"virtualbox", "nvtVirtualBox"},
      {"parallels",  "nvtParallels" },
  };
  const std::string lower = toLower(model);
  for (const auto& [word, type] : kTypes) {
    if (lower.find(word) != std::string::npos) return type;
  }
  return "nvtPhysical";
}

// The tag of a snapshot that two names lead to; null when it is missing.
const Tag* find(const kevaDoc& snapshot, const char* section, const char* name) {
  const Tag* tag = snapshot.top().findChild(section);
  return tag == nullptr ? nullptr : tag->findChild(name);
}

void copyAttribute(const Tag& tag, const char* attribute, const char* path, kevaDoc& asset) {
  if (const TagAttribute* found = tag.findAttribute(attribute)) asset.set(path, found->value());
}

void setOperatingSystem(const kevaDoc& snapshot, kevaDoc& asset) {
  const Tag* os = find(snapshot, "OS", "os:1");
  if (os != nullptr) {
    copyAttribute(*os, "name", "/control/os-name", asset);
    asset.set("/control/os-sp", TagValue(""));
    copyAttribute(*os, "update", "/control/os-sp", asset);
    asset.set("/control/os-ver", TagValue(""));
    copyAttribute(*os, "version", "/control/os-ver", asset);
  }
  asset.set("/control/os-manuf", TagValue("Apple Inc."));
  if (os != nullptr) copyAttribute(*os, "architecture", "/control/os-arch", asset);
}

void setMonitorCount(const kevaDoc& snapshot, kevaDoc& asset) {
  const Tag* monitors = find(snapshot, "Video", "Monitors");
  asset.set("/control/monitor-count",
            monitors == nullptr ? TagValue("0")
                                : TagValue(static_cast<std::int64_t>(monitors->childCount())));
}

// One entry for each volume whose free space is known, numbered by its place in the list.
void setDisks(const kevaDoc& snapshot, kevaDoc& asset) {
  const Tag* disks = find(snapshot, "Storage", "Logical-disks");
  if (disks == nullptr) return;
  int number = 0;
  for (const auto& disk : disks->children()) {
    ++number;
    const TagAttribute* free = disk->findAttribute("free");
    if (free == nullptr) continue;
    const TagValue& name = disk->value() == nullptr ? TagValue() : *disk->value();
    TagAttribute* entry = asset.set(formatString("/control/disk:%d", number), name);
    const std::string* bytes = free->findProperty("base-value");
    entry->addProperty("free", bytes == nullptr ? "" : *bytes);
    const TagAttribute* used = disk->findAttribute("used%");
    const std::int64_t* percent = used == nullptr ? nullptr : used->value().integer();
    entry->addProperty("free%",
                       formatString("%lld", percent == nullptr ? 100LL : 100LL - *percent));
    const TagAttribute* mountPoint = disk->findAttribute("mount-point");
    const SharedText* path = mountPoint == nullptr ? nullptr : mountPoint->value().text();
    if (path != nullptr && *path == "/") entry->addProperty("sys", "1");
  }
}

void setControl(const AssetFacts& facts, const kevaDoc& snapshot, kevaDoc& asset) {
  asset.set("/control/domain", TagValue(facts.network.domain));
  setOperatingSystem(snapshot, asset);
  const Entry hardware[] = {
      {"/control/cpu-count",         facts.host.packageCount         },
      {"/control/cpu-count-virtual", facts.host.processorCount       },
      {"/control/cpu-speed",         facts.host.processorSpeed       },
      {"/control/cpu-model",         facts.host.processorModel       },
      {"/control/cpu-manuf",         facts.host.processorManufacturer},
      {"/control/system-model",      facts.host.systemModel          },
      {"/control/system-manuf",      facts.host.systemManufacturer   },
      {"/control/chassis-manuf",     "Apple Inc."                    },
      {"/control/mb-manuf",          "Apple Inc."                    },
      {"/control/phys-memory",       facts.host.physicalMemory       },
      {"/control/video-ram",         facts.host.videoMemory          },
      {"/control/video-res",         facts.host.resolution           },
  };
  setAll(hardware, asset);
  setMonitorCount(snapshot, asset);
  asset.set("/control/monitor-diag", TagValue(facts.host.monitorDiagonal));
  asset.set("/control/hdd-capacity", TagValue(facts.host.diskCapacity));
  setDisks(snapshot, asset);
  asset.set("/control/fw-status", TagValue("5"));
}

}  // namespace

std::unique_ptr<kevaDoc> buildAssetInfo(const AssetFacts& facts, const kevaDoc& snapshot,
                                        bool nativeByteOrder) {
  auto asset = std::make_unique<kevaDoc>(nativeByteOrder, "AssetInfo");
  setNames(facts, *asset);
  const Entry entries[] = {
      {"/login",          facts.login                        },
      {"/user-name",      facts.host.userName                },
      {"/asset-type",     "natMacOS"                         },
      {"/virtual-type",   virtualType(facts.host.systemModel)},
      {"/scan-type",      "nstSSH"                           },
      {"/scan-subtype",   "sstService"                       },
      {"/auto-icon-type", "nitMacDesktop"                    },
      {"/icon-type",      "nitMacDesktop"                    },
      {"/first-scan",     facts.timestamp                    },
      {"/last-scan",      facts.timestamp                    },
      {"/snapshot-list",  facts.timestamp                    },
      {"/snapshot-types", "mac:1"                            },
      {"/mac-address",    facts.network.macAddress           },
      {"/uuid",           facts.host.platformUuid            },
      {"/serial-number",  facts.serialNumber                 },
      {"/asset-tag",      "1234567890000"                    },
  };
  setAll(entries, *asset);
  setControl(facts, snapshot, *asset);
  return asset;
}

std::unique_ptr<kevaDoc> buildDebugAssetInfo(const AssetFacts& facts, bool nativeByteOrder) {
  auto asset = std::make_unique<kevaDoc>(nativeByteOrder, "AssetInfo");
  setNames(facts, *asset);
  const Entry entries[] = {
      {"/login",          ""                      },
      {"/user-name",      ""                      },
      {"/asset-type",     "natMacOS"              },
      {"/virtual-type",   "nvtPhysical"           },
      {"/scan-type",      "nstNone"               },
      {"/scan-subtype",   "sstNone"               },
      {"/auto-icon-type", "nitMacDesktop"         },
      {"/icon-type",      "nitMacDesktop"         },
      {"/first-scan",     ""                      },
      {"/last-scan",      ""                      },
      {"/snapshot-list",  ""                      },
      {"/snapshot-types", ""                      },
      {"/uuid",           ""                      },
      {"/serial-number",  ""                      },
      {"/asset-tag",      ""                      },
      {"/mac-address",    facts.network.macAddress},
      {"/scan-attempt",   facts.timestamp         },
      {"/error-message",  "Debug scan"            },
  };
  setAll(entries, *asset);
  return asset;
}
