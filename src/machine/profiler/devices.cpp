#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "machine/cleanText.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kTable = tableAt("devices");

constexpr std::size_t at(std::string_view column) {
  return columnAt("devices", column);
}

using Cells = std::span<const Cell<Convert>>;

// Adds what the item tells; a name and whether it is connected may be known from around it.
void addDevice(TableData& table, const char* kind, Cells cells, const PropertyList& item,
               Value name = {}, std::optional<bool> connected = {}) {
  Row row = emptyRow(kTable);
  row[at("name")] = std::move(name);
  write(cells, item, row);
  if (connected) row[at("connected")] = *connected;
  if (!std::ranges::any_of(row, isKnown)) return;
  row[at("kind")] = kind;
  table.rows.push_back(std::move(row));
}

// --- Bluetooth: other keys from macOS 12 on

constexpr Line kControllerLines[] = {
    {"name",         {"controller_chipset", "general_chipset"},            text           },
    {"address",      {"controller_address", "general_address"},            hardwareAddress},
    {"manufacturer", {"general_mfg", "controller_vendorID"},               text           },
    {"model",        {"controller_productID", "general_productID"},        text           },
    {"firmware",     {"controller_firmwareVersion", "general_fw_version"}, text           },
    {"connection",   {"controller_transport", "general_transport"},        text           },
};
constexpr auto kController = cells("devices", kControllerLines);
constexpr Line kBluetoothLines[] = {
    {"address",      {"device_address", "device_addr"},          hardwareAddress},
    {"serial",       {"device_serialNumber"},                    stated         },
    {"manufacturer", {"device_manufacturer", "device_vendorID"}, text           },
    {"model",        {"device_productID"},                       text           },
    {"firmware",     {"device_firmwareVersion"},                 text           },
    {"connected",    {"device_isconnected", "device_connected"}, flag           },
};
constexpr auto kBluetooth = cells("devices", kBluetoothLines);
constexpr const char* kControllers[] = {"controller_properties", "local_device_title"};
constexpr struct {
  std::string_view key;
  std::optional<bool> connected;  // nothing where each device says it
} kBluetoothLists[] = {
    {"device_connected",     true        },
    {"device_not_connected", false       },
    {"device_title",         std::nullopt},
};

void readBluetooth(const PropertyList& item, TableData& table) {
  for (const char* key : kControllers) {
    const PropertyList* controller = item.find(key);
    if (controller != nullptr) addDevice(table, "bluetooth", kController, *controller);
  }
  for (const auto& list : kBluetoothLists) {
    for (const PropertyList& named : listIn(item, list.key)) {
      if (named.dictionary() == nullptr) continue;
      for (const auto& [name, device] : *named.dictionary()) {
        addDevice(table, "bluetooth", kBluetooth, device, textValue(name), list.connected);
      }
    }
  }
}

// --- audio: the devices of CoreAudio; older systems list the jacks of the sound chip beside them

constexpr Line kAudioLines[] = {
    {"name",         {"_name"},                         text},
    {"manufacturer", {"coreaudio_device_manufacturer"}, text},
    {"connection",   {"coreaudio_device_transport"},    word},
};
constexpr auto kAudio = cells("devices", kAudioLines);

void readAudio(const PropertyList& item, TableData& table) {
  if (textIn(item, "_name") != "coreaudio_device") return;
  for (const PropertyList& device : listIn(item, "_items"))
    addDevice(table, "audio", kAudio, device);
}

// --- cameras

constexpr Line kCameraLines[] = {
    {"name",  {"_name"},             text},
    {"model", {"spcamera_model-id"}, text},
};
constexpr auto kCamera = cells("devices", kCameraLines);

void readCamera(const PropertyList& item, TableData& table) {
  addDevice(table, "camera", kCamera, item);
}

// --- Thunderbolt: the items are the Mac's own buses, what is connected stands below them

constexpr Line kThunderboltLines[] = {
    {"name",         {"device_name_key", "_name"},         text  },
    {"serial",       {"switch_uid_key"},                   stated},
    {"manufacturer", {"vendor_name_key", "vendor_id_key"}, text  },
    {"model",        {"device_id_key"},                    text  },
    {"firmware",     {"switch_version_key"},               text  },
};
constexpr auto kThunderbolt = cells("devices", kThunderboltLines);

void readThunderbolt(const PropertyList& item, TableData& table) {
  forEachBelow(item, [&](const PropertyList& device, const PropertyList&) {
    addDevice(table, "thunderbolt", kThunderbolt, device);
  });
}

// --- card readers: without the cards in them, which are disks

constexpr Line kCardReaderLines[] = {
    {"name",         {"_name"},                                             word  },
    {"serial",       {"spcardreader_serialnumber"},                         stated},
    {"manufacturer", {"spcardreader_vendor-id"},                            text  },
    {"model",        {"spcardreader_product-id", "spcardreader_device-id"}, text  },
};
constexpr auto kCardReader = cells("devices", kCardReaderLines);

void readCardReader(const PropertyList& item, TableData& table) {
  addDevice(table, "card_reader", kCardReader, item);
}

// --- Wi-Fi: without the interfaces that are no hardware of their own, which name no card

// The card without the token before it: "(0x14E4, 0x4387)" of
// "spairport_wireless_card_type_wifi (0x14E4, 0x4387)".
Value card(const PropertyList& value) {
  if (value.text() == nullptr) return {};
  const std::string_view whole = *value.text();
  const std::size_t bracket = whole.find('(');
  return textValue(bracket == std::string_view::npos ? whole : whole.substr(bracket));
}

constexpr Line kWifiLines[] = {
    {"name",     {"_name"},                               text           },
    {"address",  {"spairport_wireless_mac_address"},      hardwareAddress},
    {"model",    {"spairport_wireless_card_type"},        card           },
    {"firmware", {"spairport_wireless_firmware_version"}, text           },
};
constexpr auto kWifi = cells("devices", kWifiLines);

void readWifi(const PropertyList& item, TableData& table) {
  for (const PropertyList& interface : listIn(item, "spairport_airport_interfaces")) {
    if (interface.find("spairport_wireless_card_type") == nullptr) continue;
    addDevice(table, "wifi", kWifi, interface);
  }
}

constexpr struct {
  const char* dataType;
  void (*read)(const PropertyList& item, TableData& table);
} kKinds[] = {
    {"SPBluetoothDataType",   readBluetooth  },
    {"SPAudioDataType",       readAudio      },
    {"SPCameraDataType",      readCamera     },
    {"SPThunderboltDataType", readThunderbolt},
    {"SPCardReaderDataType",  readCardReader },
    {"SPAirPortDataType",     readWifi       },
};

}  // namespace

void readProfiledDevices(const Profile& profile, Description& machine) {
  TableData& table = machine[kTable];
  for (const auto& kind : kKinds) {
    table.recorded = table.recorded || profile.has(kind.dataType);
    profile.forEach(kind.dataType, [&](const PropertyList& item) { kind.read(item, table); });
  }
}

}  // namespace machine::profiler
