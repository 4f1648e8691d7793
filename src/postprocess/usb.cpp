#include "postprocess/usb.h"

#include <cmath>
#include <string_view>

#include "base/formatString.h"
#include "base/quantities.h"
#include "base/text.h"
#include "collect/commandRunner.h"
#include "postprocess/mapping.h"
#include "postprocess/partition.h"

namespace {

TagValue removableSpeed(const TagValue& speed, const char*) {
  if (textOf(speed) == "full_speed") return TagValue("1");
  return TagValue(textOf(speed) == "low_speed" ? "2" : "0");
}

// A device is written key by key, in the order of its keys, old and new ones ("_" before the name).
constexpr Row kDevice[] = {
    {"product-id",     {"product_id"},     copied},
    {"vendor-id",      {"vendor_id"},      copied},
    {"bcd-device",     {"bcd_device"},     copied},
    {"serial-number",  {"serial_num"},     copied},
    {"manuf",          {"manufacturer"},   copied},
    {"bus-power",      {"bus_power"},      copied},
    {"bus-power-used", {"bus_power_used"}, copied},
};
constexpr Row kRemovable[] = {
    {"bcd-device",     {"bcd_device"},     copied          },
    {"serial",         {"serial_num"},     copied          },
    {"manufacturer",   {"manufacturer"},   copied          },
    {"bus-power",      {"bus_power"},      copied          },
    {"bus-power-used", {"bus_power_used"}, copied          },
    {"device-speed",   {"device_speed"},   {removableSpeed}},
};

constexpr Row kPartition[] = {
    {"file-sys",    {"file_system"}, copied},
    {"bsd-name",    {"bsd_name"},    copied},
    {"mount-point", {"mount_point"}, copied},
};

std::string_view plainKey(const TagAttribute& source) {
  std::string_view key = source.name();
  if (key.starts_with('_')) key.remove_prefix(1);
  return key;
}

// Megabits per second, the last one in a unit of its own.
void writeDeviceSpeed(const std::string& speed, Tag& device) {
  struct Speed {
    const char* text;
    const char* value;
    const char* property;
    const char* unit;
  };
  constexpr Speed kSpeeds[] = {
      {"low_speed",   "1.5", nullptr, nullptr },
      {"full_speed",  "12",  nullptr, nullptr },
      {"high_speed",  "480", nullptr, nullptr },
      {"super_speed", "5",   "units", "Gbit-s"},
  };
  for (const Speed& row : kSpeeds) {
    if (speed != row.text) continue;
    device.setAttribute("device-speed", TagValue(row.value), row.property, row.unit);
  }
}

// Whole binary gigabytes: above 11 a fraction of more than 0.4 rounds up, below nothing does.
std::int64_t removableSize(const Item& device, std::string_view sizeKey) {
  double gigabytes = quantity(ParseSizeGB, device, sizeKey);
  if (gigabytes > 11.0 && std::fmod(gigabytes, 1.0) > 0.4) gigabytes += 1.0;
  return truncateToInteger(gigabytes);
}

// Device names go into a shell command: any other character names no device.
bool isDeviceName(const std::string& name) {
  constexpr std::string_view kAllowed =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
  return !name.empty() && name.find_first_not_of(kAllowed) == std::string::npos;
}

// A list that other steps began goes on with its first free number.
Tag& addNumbered(Tag& list, const std::string& prefix, const TagValue& value) {
  return *list.setChild(prefix + std::to_string(list.nextFreeIndex(prefix)), value);
}

class UsbWriter {
 public:
  UsbWriter(kevaDoc& snapshot, platform::Host& host)
      : snapshot_(snapshot), host_(host), devices_(snapshot, {"Peripherals", "USB"}, "Device:") {}

  void writeDevice(const Item& device) {
    if (device.text("removable_media") == "yes") writeRemovable(device);
    if (device.child("_items") != nullptr) {  // a hub
      for (const Item& nested : nestedItems(device, "_items")) writeDevice(nested);
      return;
    }
    Tag& tag = devices_.add(device.value("_name"));
    for (const auto& source : device.tag().attributes()) {
      const std::string_view key = plainKey(*source);
      write(kDevice, key, source->value(), tag);
      if (key == "device_speed") writeDeviceSpeed(textOf(source->value()), tag);
    }
  }

 private:
  void writeRemovable(const Item& device) {
    Tag& disk = addNumbered(branch(snapshot_, {"Storage", "Physical-disks"}),
                            "Removable:", device.value("_name"));
    disk.setAttribute("media-type", TagValue("2"));
    for (const auto& source : device.tag().attributes()) {
      const std::string_view key = plainKey(*source);
      write(kRemovable, key, source->value(), disk);
      if (key == "size") writeSize(device, source->name(), disk);
      if (key == "bsd_name") writeModel(textOf(source->value()), disk);
    }
    disk.setAttribute("interface", TagValue("USB"));
    writeVolumes(device, disk);
  }

  static void writeSize(const Item& device, std::string_view sizeKey, Tag& disk) {
    TagAttribute* size = disk.setAttribute("size", TagValue(removableSize(device, sizeKey)));
    if (!device.has("size_in_bytes")) return;
    size->setProperty("base-value", bytesText(device.integer("size_in_bytes")));
  }

  void writeModel(const std::string& deviceName, Tag& disk) {
    constexpr std::int32_t kChunkSize = 200;  // bytes
    if (!isDeviceName(deviceName)) return;
    std::uint32_t length = 0;
    const std::string output = runCommand(
        host_, formatString("diskutil info /dev/%s", deviceName.c_str()), length, kChunkSize);
    if (const auto model = parseMediaName(output)) disk.setAttribute("model", TagValue(*model));
  }

  void writeVolumes(const Item& device, Tag& disk) {
    std::int64_t count = 0;
    for (const Item& volume : nestedItems(device, "volumes")) {
      if (!volume.has("_name") || !volume.has("free_space")) continue;
      Tag& partition = addNumbered(branch(snapshot_, {"Storage", "Logical-disks"}),
                                   "partition:", volume.value("_name"));
      write(kPartition, volume, partition);
      writePercentages(writeAmounts(volume, partition), partition);
      ++count;
    }
    disk.setAttribute("partitions", TagValue(count));
  }

  kevaDoc& snapshot_;
  platform::Host& host_;
  Entries devices_;
};

}  // namespace

void PostProcessUsb(kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host) {
  UsbWriter writer(snapshot, host);
  for (const Item& bus : items(raw, "SPUSBDataType")) {
    for (const Item& device : nestedItems(bus, "_items")) writer.writeDevice(device);
  }
}

std::optional<std::string> parseMediaName(const std::string& output) {
  constexpr std::string_view kLabel = "Device / Media Name:";
  const std::size_t label = output.find(kLabel);
  if (label == std::string::npos) return std::nullopt;
  const std::size_t start = label + kLabel.size();
  std::size_t end = output.find(" Media\n", start);
  if (end == std::string::npos) end = output.find(" Volume Name: ", start);
  if (end == std::string::npos) return std::nullopt;
  std::string name = output.substr(start, end - start);
  return TrimChars(name, " \n\r", kTrimBoth);
}
