#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "machine/cleanText.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"
#include "machine/quantity.h"
#include "machine/usbIds.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kTable = tableAt("usb");

constexpr std::size_t at(std::string_view column) {
  return columnAt("usb", column);
}

Value identifier(const PropertyList& value) {
  return value.text() == nullptr ? Value() : usbId(*value.text());
}

// "0x14200000 / 3": the place and the address that the device has there.
Value location(const PropertyList& value) {
  return value.text() == nullptr ? Value() : textValue(FirstWord(*value.text()));
}

Value version(const PropertyList& value) {
  return value.text() == nullptr ? text(value) : usbVersion(*value.text());
}

// "high_speed", "10 Gb/s", "1.5 Mb/s".
Value speed(const PropertyList& value) {
  struct Speed {
    std::string_view name;
    double megabits;
  };
  constexpr Speed kSpeeds[] = {
      {"low_speed",        1.5    },
      {"full_speed",       12.0   },
      {"high_speed",       480.0  },
      {"super_speed",      5000.0 },
      {"super_speed_plus", 10000.0},
  };
  const Value known = text(value);
  const std::string_view figure = textOf(known);
  const auto* named = std::ranges::find(kSpeeds, figure, &Speed::name);
  if (named != std::end(kSpeeds)) return named->megabits;
  const std::optional<double> number = leadingNumber(figure);
  if (!number) return {};
  if (figure.find("Gb") != std::string_view::npos) return *number * 1000;
  return figure.find("Mb") != std::string_view::npos ? Value(*number) : Value();
}

// "500", or "4.48 W (896 mA)".
Value milliamperes(const PropertyList& value) {
  if (value.text() == nullptr) return integer(value);
  std::string_view figure = *value.text();
  const std::size_t unit = figure.find(" mA");
  if (unit != std::string_view::npos) {
    figure = figure.substr(0, unit);
    figure.remove_prefix(figure.rfind('(') + 1);  // from the start when there is none
  }
  const std::optional<std::int64_t> number = wholeNumber(figure);
  return number && *number >= 0 ? Value(*number) : Value();
}

// Up to 10.8 or so the keys have a letter that sorts them, some systems' a "_".
constexpr Line kDeviceLines[] = {
    {"name",         {"_name"},                                                 word        },
    {"serial",       {"serial_num", "_serial_num", "d_serial_num"},             stated      },
    {"vendor_id",    {"vendor_id", "_vendor_id", "b_vendor_id"},                identifier  },
    {"product_id",   {"product_id", "_product_id", "a_product_id"},             identifier  },
    {"manufacturer", {"manufacturer", "_manufacturer", "f_manufacturer"},       stated      },
    {"version",      {"bcd_device", "_bcd_device", "c_bcd_device"},             version     },
    {"speed_mbit_s", {"device_speed", "_device_speed", "e_device_speed"},       speed       },
    {"power_ma",     {"bus_power_used", "_bus_power_used", "j_bus_power_used"}, milliamperes},
    {"location",     {"location_id", "_location_id", "g_location_id"},          location    },
};
constexpr auto kDevice = cells("usb", kDeviceLines);

// From macOS 26 on.
constexpr Line kHostDeviceLines[] = {
    {"serial",       {"USBDeviceKeySerialNumber"},    stated      },
    {"vendor_id",    {"USBDeviceKeyVendorID"},        identifier  },
    {"product_id",   {"USBDeviceKeyProductID"},       identifier  },
    {"manufacturer", {"USBDeviceKeyVendorName"},      stated      },
    {"version",      {"USBDeviceKeyProductVersion"},  version     },
    {"speed_mbit_s", {"USBDeviceKeyLinkSpeed"},       speed       },
    {"power_ma",     {"USBDeviceKeyPowerAllocation"}, milliamperes},
    {"location",     {"USBKeyLocationID"},            location    },
};
constexpr auto kHostDevice = cells("usb", kHostDeviceLines);

Row deviceRow(const PropertyList& device, const PropertyList& parent) {
  Row row = emptyRow(kTable);
  write(kDevice, device, row);
  write(kHostDevice, device, row);
  row[at("hub")] = !listIn(device, "_items").empty();
  if (const PropertyList* name = parent.find("_name")) row[at("parent")] = word(*name);
  return row;
}

// What makes two rows one device, when both data types hold it.
std::vector<std::string> keyOf(const Row& row) {
  std::vector<std::string> key;
  for (const char* column : {"location", "vendor_id", "product_id", "serial"})
    key.emplace_back(textOf(row[columnAt("usb", column)]));
  return key;
}

}  // namespace

void readProfiledUsb(const Profile& profile, Description& machine) {
  TableData& table = machine[kTable];
  table.recorded = profile.has("SPUSBDataType") || profile.has("SPUSBHostDataType");
  std::set<std::vector<std::string>> known;
  for (const char* dataType : {"SPUSBDataType", "SPUSBHostDataType"}) {
    const bool first = known.empty();
    profile.forEach(dataType, [&](const PropertyList& bus) {
      forEachBelow(bus, [&](const PropertyList& device, const PropertyList& parent) {
        Row row = deviceRow(device, parent);
        const bool isNew = known.insert(keyOf(row)).second;
        if (isNew || first) table.rows.push_back(std::move(row));
      });
    });
  }
}

}  // namespace machine::profiler
