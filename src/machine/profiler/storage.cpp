#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/text.h"
#include "machine/cleanText.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"
#include "machine/usbIds.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kDisks = tableAt("disks");
constexpr std::size_t kVolumes = tableAt("volumes");

constexpr std::size_t disk(std::string_view column) {
  return columnAt("disks", column);
}
constexpr std::size_t volume(std::string_view column) {
  return columnAt("volumes", column);
}

// --- conversions

Value bytes(const PropertyList& value) {
  const Value number = integer(value);
  const std::int64_t* known = std::get_if<std::int64_t>(&number);
  return known != nullptr && *known >= 0 ? number : Value();
}

Value capacity(const PropertyList& value) {
  const Value number = bytes(value);
  return number == Value(std::int64_t{0}) ? Value() : number;
}

// "Zero KB" is how a free space of nothing is printed.
Value printedBytes(const PropertyList& value) {
  if (value.text() != nullptr && value.text()->starts_with("Zero ")) return std::int64_t{0};
  return diskBytes(value);
}

Value kind(const PropertyList& value) {
  const std::string medium = toLower(textOf(text(value)));
  if (medium == "ssd" || medium == "solid state") return "ssd";
  return medium == "rotational" ? Value("rotational") : Value();
}

Value health(const PropertyList& value) {
  const std::string status = toLower(textOf(text(value)));
  return status == "verified" || status == "failing" ? Value(status) : Value();
}

Value version(const PropertyList& value) {
  return value.text() == nullptr ? text(value) : usbVersion(*value.text());
}

// --- disks

constexpr Line kDeviceLines[] = {
    {"serial",     {"device_serial"},                              stated  },
    {"model",      {"device_model"},                               text    },
    {"bsd_name",   {"bsd_name"},                                   text    },
    {"size_bytes", {"size_in_bytes"},                              capacity},
    {"kind",       {"spsata_medium_type", "medium_type"},          kind    },
    {"health",     {"smart_status"},                               health  },
    {"trim",       {"spsata_trim_support", "spnvme_trim_support"}, flag    },
    {"firmware",   {"device_revision"},                            text    },
};
constexpr auto kDevice = cells("disks", kDeviceLines);

constexpr Line kUsbDeviceLines[] = {
    {"serial",   {"serial_num", "_serial_num", "d_serial_num", "USBDeviceKeySerialNumber"}, stated},
    {"model",    {"_name"},                                                                 text  },
    {"firmware",
     {"bcd_device", "_bcd_device", "c_bcd_device", "USBDeviceKeyProductVersion"},
     version                                                                                      },
};
constexpr auto kUsbDevice = cells("disks", kUsbDeviceLines);

// What a volume says about the disk that it is on.
constexpr Line kDriveLines[] = {
    {"model",     {"device_name"},      text  },
    {"interface", {"protocol"},         text  },
    {"kind",      {"medium_type"},      kind  },
    {"internal",  {"is_internal_disk"}, flag  },
    {"health",    {"smart_status"},     health},
};
constexpr auto kDrive = cells("disks", kDriveLines);

constexpr Line kPrintedSizeLines[] = {
    {"size_bytes", {"size"}, diskBytes},
};
constexpr auto kPrintedDiskSize = cells("disks", kPrintedSizeLines);

constexpr Line kVolumeLines[] = {
    {"mount_point", {"mount_point"},         text    },
    {"name",        {"_name"},               text    },
    {"bsd_name",    {"bsd_name"},            text    },
    {"uuid",        {"volume_uuid"},         text    },
    {"file_system", {"file_system"},         text    },
    {"size_bytes",  {"size_in_bytes"},       capacity},
    {"free_bytes",  {"free_space_in_bytes"}, bytes   },
    {"writable",    {"writable"},            flag    },
};
constexpr auto kVolume = cells("volumes", kVolumeLines);

constexpr Line kPrintedVolumeLines[] = {
    {"size_bytes", {"size"},       diskBytes   },
    {"free_bytes", {"free_space"}, printedBytes},
};
constexpr auto kPrintedVolume = cells("volumes", kPrintedVolumeLines);

struct Bus {
  const char* dataType;
  const char* interface;
  const char* kind;  // of all its disks; null when they say it themselves
};
constexpr Bus kBuses[] = {
    {"SPSerialATADataType",    "SATA",        nullptr},
    {"SPParallelSCSIDataType", "SCSI",        nullptr},
    {"SPParallelATADataType",  "PATA",        nullptr},
    {"SPNVMeDataType",         "PCI-Express", "ssd"  },
};

// "disk3" of "disk3s1s1"; "" for what is no such name.
std::string wholeDisk(std::string_view bsdName) {
  if (!bsdName.starts_with("disk")) return "";
  const std::size_t end = std::min(bsdName.find_first_not_of("0123456789", 4), bsdName.size());
  return end == 4 ? "" : std::string(bsdName.substr(0, end));
}

bool isApfs(std::string_view fileSystem) {
  return fileSystem.find("APFS") != std::string_view::npos;
}

class StorageReader {
 public:
  explicit StorageReader(Description& machine)
      : disks_(machine[kDisks].rows), volumes_(machine[kVolumes].rows) {}

  void readControllers(const Profile& profile, const Bus& bus) {
    profile.forEach(bus.dataType, [&](const PropertyList& controller) {
      for (const PropertyList& device : listIn(controller, "_items")) readDevice(device, bus);
    });
  }

  // From macOS 26 on a device stands in the second data type.
  void readUsb(const Profile& profile) {
    for (const char* dataType : {"SPUSBDataType", "SPUSBHostDataType"}) {
      profile.forEach(dataType, [&](const PropertyList& bus) {
        forEachBelow(bus, [&](const PropertyList& device, const PropertyList&) {
          const auto media = listIn(device, "Media");
          for (const PropertyList& medium : media) readMedium(device, medium);
          if (media.empty() && flagIn(device, "removable_media") == true)
            readMedium(device, device);
        });
      });
    }
  }

  // The mounted volumes, and the disks that nothing else tells of: those of virtual Macs, and of
  // USB without "Media".
  void readStorage(const Profile& profile) {
    profile.forEach("SPStorageDataType", [&](const PropertyList& item) {
      Row row = volumeRow(item);
      std::string models;
      forEachDrive(item, [&](const PropertyList& drive, std::string_view bsdName) {
        const Row known = driveRow(drive);
        const bool image = textIn(drive, "protocol") == "Disk Image";
        const Row& found =
            image ? known
                  : completeDisk(known, wholeDisk(bsdName), textOf(row[volume("container")]));
        const std::string_view model = textOf(found[disk("model")]);
        if (!models.empty() && !model.empty()) models += ", ";
        models += model;
        row[volume("internal")] = known[disk("internal")];
      });
      row[volume("disk_model")] = textValue(models);
      addVolume(std::move(row));
    });
  }

 private:
  void readDevice(const PropertyList& device, const Bus& bus) {
    Row row = emptyRow(kDisks);
    write(kPrintedDiskSize, device, row);
    write(kDevice, device, row);
    row[disk("interface")] = bus.interface;
    if (bus.kind != nullptr) row[disk("kind")] = bus.kind;
    const bool sized = isKnown(row[disk("size_bytes")]) || !listIn(device, "volumes").empty();
    const bool isDisk = sized || isKnown(row[disk("health")]) || bus.kind != nullptr;
    if (!isDisk && (!isKnown(row[disk("model")]) || isNoDrive(device))) return;
    const bool burns = device.find("optical_drive_type") != nullptr;
    if (burns || !isDisk) row[disk("kind")] = "optical";  // without a disc it has no size
    addDisk(std::move(row), device);
  }

  // Devices of SCSI have a type of their own (SPC, "peripheral device type"): 5 is an optical
  // drive.
  static bool isNoDrive(const PropertyList& device) {
    const std::string_view type = textIn(device, "device_pdt");
    return !type.empty() && type != "0x05";
  }

  void readMedium(const PropertyList& device, const PropertyList& medium) {
    Row row = emptyRow(kDisks);
    write(kPrintedDiskSize, medium, row);
    write(kDevice, medium, row);
    write(kUsbDevice, device, row);
    row[disk("interface")] = "USB";
    if (byBsdName_.contains(std::string(textOf(row[disk("bsd_name")])))) return;
    if (flagIn(medium, "removable_media") == true) row[disk("kind")] = "removable";
    addDisk(std::move(row), medium);
  }

  // A volume that is listed with its disk and by itself is one; what stands by itself is newer.
  void addVolume(Row row) {
    const std::string bsdName(textOf(row[volume("bsd_name")]));
    const auto [place, isNew] = volumePlaces_.emplace(bsdName, volumes_.size());
    if (isNew || bsdName.empty()) {
      volumes_.push_back(std::move(row));
    } else {
      complete(row, volumes_[place->second]);
      volumes_[place->second] = std::move(row);
    }
  }

  void addDisk(Row row, const PropertyList& device) {
    const Value model = row[disk("model")];
    const std::string bsdName(textOf(row[disk("bsd_name")]));
    if (!bsdName.empty()) byBsdName_.emplace(bsdName, disks_.size());
    if (isKnown(model)) byModel_.emplace(textOf(model), disks_.size());
    disks_.push_back(std::move(row));
    for (const PropertyList& item : listIn(device, "volumes")) {
      if (textIn(item, "mount_point").empty() && item.find("free_space") == nullptr) continue;
      Row mounted = volumeRow(item);
      mounted[volume("disk_model")] = model;
      addVolume(std::move(mounted));
    }
  }

  static Row volumeRow(const PropertyList& item) {
    Row row = emptyRow(kVolumes);
    write(kPrintedVolume, item, row);
    write(kVolume, item, row);
    const std::string_view fileSystem = textOf(row[volume("file_system")]);
    // The volumes of an APFS container are slices of one disk, which is that container.
    if (isApfs(fileSystem)) {
      row[volume("container")] = textValue(wholeDisk(textOf(row[volume("bsd_name")])));
    }
    if (const PropertyList* logical = item.find("com.apple.corestorage.lv")) {
      const auto encrypted = flagIn(*logical, "com.apple.corestorage.lv.encrypted");
      if (encrypted) row[volume("encrypted")] = *encrypted;
    }
    return row;
  }

  static Row driveRow(const PropertyList& drive) {
    Row row = emptyRow(kDisks);
    write(kDrive, drive, row);
    return row;
  }

  // The physical disks that a volume says it is on, each with the device name of a part of it; ""
  // when none is said: the name of a volume of APFS is one of its container.
  static void forEachDrive(
      const PropertyList& item,
      const std::function<void(const PropertyList& drive, std::string_view bsdName)>& take) {
    for (const PropertyList& part : listIn(item, "com.apple.corestorage.pv")) {
      take(part, textIn(part, "_name"));
    }
    const PropertyList* drive = item.find("physical_drive");
    if (drive == nullptr) return;
    take(*drive, isApfs(textIn(item, "file_system")) ? "" : textIn(item, "bsd_name"));
  }

  // --- finding disks again: by their device name, else by their model

  // The row of the disk, which is added when there is none yet; what the row does not know is set.
  // A disk without either name is told from others by the container that is on it.
  const Row& completeDisk(Row known, const std::string& bsdName, std::string_view container) {
    if (!bsdName.empty()) known[disk("bsd_name")] = bsdName;
    const std::string model(textOf(known[disk("model")]));
    const std::string shared = model.empty() ? std::string(container) : model;
    const auto named = byBsdName_.find(bsdName);
    const auto alike = byModel_.find(shared);
    std::size_t place = disks_.size();
    if (named != byBsdName_.end()) {
      place = named->second;
    } else if (alike != byModel_.end() &&
               (bsdName.empty() || !isKnown(disks_[alike->second][disk("bsd_name")]))) {
      place = alike->second;
    } else {
      disks_.push_back(emptyRow(kDisks));
    }
    complete(disks_[place], known);
    if (!bsdName.empty()) byBsdName_.emplace(bsdName, place);
    if (!shared.empty()) byModel_.emplace(shared, place);
    return disks_[place];
  }

  std::vector<Row>& disks_;
  std::vector<Row>& volumes_;
  std::unordered_map<std::string, std::size_t> volumePlaces_;  // in volumes_, by device name
  std::unordered_map<std::string, std::size_t> byBsdName_;     // places in disks_
  std::unordered_map<std::string, std::size_t> byModel_;       // the first one of each
};

}  // namespace

void readProfiledStorage(const Profile& profile, Description& machine) {
  StorageReader reader(machine);
  bool recorded = profile.has("SPStorageDataType");
  for (const Bus& bus : kBuses) {
    recorded = recorded || profile.has(bus.dataType);
    reader.readControllers(profile, bus);
  }
  reader.readUsb(profile);
  reader.readStorage(profile);
  TableData& disks = machine[kDisks];
  TableData& volumes = machine[kVolumes];
  disks.recorded = recorded || !disks.rows.empty();
  volumes.recorded = profile.has("SPStorageDataType") || !volumes.rows.empty();
}

}  // namespace machine::profiler
