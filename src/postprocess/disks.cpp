#include "postprocess/disks.h"

#include "base/quantities.h"
#include "postprocess/coreStorage.h"
#include "postprocess/mapping.h"
#include "postprocess/partition.h"

namespace {

constexpr Row kIdentity[] = {
    {"serial", {"device_serial"},   copied},
    {"fw-rev", {"device_revision"}, copied},
};

// One kind of bus. `mediaType` says "fixed disk", on SCSI as a text.
struct Bus {
  const char* interface;
  TagValue mediaType;
};

// Decimal gigabytes of a disk, whole, and its bytes.
void writeSize(const Item& device, Tag& disk) {
  constexpr std::int64_t kGigabyte = 1'000'000'000;  // bytes
  constexpr auto kRounded = [](const std::string& text) { return SizeToDecimalGB(text, true); };
  std::int64_t bytes = 0;
  std::int64_t gigabytes = 0;
  if (device.has("size_in_bytes")) {
    bytes = device.integer("size_in_bytes");
    gigabytes = bytes / kGigabyte;
  } else {
    bytes = quantity(SizeToBytes, device, "size");
    gigabytes = truncateToInteger(quantity(kRounded, device, "size"));
  }
  disk.setAttribute("size", TagValue(gigabytes), "base-value", bytesText(bytes).c_str());
}

void writePartition(const Item& volume, Tag& partition) {
  if (volume.has("file_system")) partition.addProperty("file-sys", volume.text("file_system"));
  const VolumeAmounts amounts = writeAmounts(volume, partition);
  copyPresent(volume, "mount_point", partition, "mount-point");
  writePercentages(amounts, partition);
}

// The numbers of disks, drives and partitions run on through all buses.
class DiskWriter {
 public:
  DiskWriter(kevaDoc& snapshot, const kevaDoc& raw)
      : disks_(snapshot, {"Storage", "Physical-disks"}, "HDD:"),
        drives_(snapshot, {"Storage", "Physical-disks"}, "CD:"),
        partitions_(snapshot, {"Storage", "Logical-disks"}, "partition:"),
        coreStorage_(raw) {}

  void writeDisk(const Bus& bus, const Item& device) {
    Tag& disk = disks_.add();
    copyPresent(device, "device_model", disk, "model");
    disk.setAttribute("interface", TagValue(bus.interface));
    disk.setAttribute("mediatype", bus.mediaType, "type", "media-type");
    writeSize(device, disk);
    write(kIdentity, device, disk);
    std::int64_t count = 0;
    for (const Item& volume : nestedItems(device, "volumes")) {
      if (!volume.has("_name")) continue;
      writeVolume(volume, device.text("device_model"), partitions_.add(volume.value("_name")));
      ++count;
    }
    disk.setAttribute("partitions", TagValue(count));
  }

  void writeDrive(const Item& device) {
    copyPresent(device, "device_model", drives_.add(), "model");
  }

 private:
  void writeVolume(const Item& volume, const std::string& diskModel, Tag& partition) {
    if (volume.text("iocontent") != "Apple_CoreStorage") {
      writePartition(volume, partition);
      return;
    }
    const CoreStorage::Match* match = coreStorage_.find(textOf(*partition.value()), diskModel);
    if (match == nullptr) {
      partition.addProperty("kind", "encrypted");
      writePartition(volume, partition);
      return;
    }
    if (match->logical) {
      if (match->volume.has("_name")) partition.setValue(match->volume.value("_name"));
      const Tag* logical = match->volume.child("com.apple.corestorage.lv");
      if (logical != nullptr && Item(*logical).text("com.apple.corestorage.lv.encrypted") != "no") {
        partition.addProperty("kind", "encrypted");
      }
    }
    writePartition(match->volume, partition);
  }

  Entries disks_;
  Entries drives_;
  Entries partitions_;
  CoreStorage coreStorage_;
};

// The devices of all controllers of a data type.
std::vector<Item> devices(const kevaDoc& raw, std::string_view dataType) {
  std::vector<Item> all;
  for (const Item& controller : items(raw, dataType)) {
    for (const Item& device : nestedItems(controller, "_items")) all.push_back(device);
  }
  return all;
}

bool isFixedDisk(const Item& sataDevice) {
  return sataDevice.has("smart_status") && sataDevice.text("smart_status") != "Not Supported";
}

}  // namespace

void PostProcessDisks(kevaDoc& snapshot, const kevaDoc& raw) {
  const Bus sata{"SATA", TagValue(std::int64_t{3})};
  const Bus scsi{"SCSI", TagValue("3")};
  const Bus nvme{"PCI-Express", TagValue(std::int64_t{3})};
  DiskWriter writer(snapshot, raw);
  for (const Item& device : devices(raw, "SPSerialATADataType")) {
    if (isFixedDisk(device)) {
      writer.writeDisk(sata, device);
    } else if (device.has("device_model")) {
      writer.writeDrive(device);
    }
  }
  for (const Item& device : devices(raw, "SPParallelSCSIDataType")) {
    if (device.has("size_in_bytes") || device.has("size")) writer.writeDisk(scsi, device);
  }
  for (const Item& device : devices(raw, "SPParallelATADataType")) writer.writeDrive(device);
  for (const Item& device : devices(raw, "SPNVMeDataType")) writer.writeDisk(nvme, device);
}
