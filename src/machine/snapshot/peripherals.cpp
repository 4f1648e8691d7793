#include <string>
#include <string_view>

#include "machine/cleanText.h"
#include "machine/quantity.h"
#include "machine/snapshot/item.h"
#include "machine/snapshot/sections.h"
#include "machine/usbIds.h"

namespace machine::snapshot {

namespace {

constexpr std::size_t kAdaptersTable = tableAt("adapters");
constexpr std::size_t kUsbTable = tableAt("usb");
constexpr std::size_t kPrintersTable = tableAt("printers");

// Of a list of addresses with ", " between them those that are of IPv6, or those that are not.
Value addresses(std::string_view list, bool ipv6) {
  constexpr std::string_view kBetween = ", ";
  std::string chosen;
  for (std::size_t at = 0; at < list.size();) {
    const std::size_t end = std::min(list.find(kBetween, at), list.size());
    const std::string_view address = list.substr(at, end - at);
    if ((address.find(':') != std::string_view::npos) == ipv6) {
      if (!chosen.empty()) chosen += kBetween;
      chosen += address;
    }
    at = end + kBetween.size();
  }
  return textValue(chosen);
}

Value ipv4(std::string_view list) {
  return addresses(list, false);
}

Value ipv6(std::string_view list) {
  return addresses(list, true);
}

constexpr Line kAdapterLines[] = {
    {"interface",      {"bsd-device-name"}, text},
    {"type",           {"type"},            text},
    {"mac_address",    {"mac-address"},     text},
    {"ip_addresses",   {"ip-address"},      ipv4},
    {"ipv6_addresses", {"ip-address"},      ipv6},
    {"subnet_masks",   {"ip-subnet"},       text},
    {"gateway",        {"default-gateway"}, text},
};
constexpr auto kAdapter = cells("adapters", kAdapterLines);
constexpr Line kDeviceLines[] = {
    {"serial",       {"serial-number"},  stated },
    {"vendor_id",    {"vendor-id"},      usbId  },
    {"product_id",   {"product-id"},     usbId  },
    {"manufacturer", {"manuf"},          stated },
    {"version",      {"bcd-device"},     text   },
    {"speed_mbit_s", {"device-speed"},   real   },
    {"power_ma",     {"bus-power-used"}, integer},
};
constexpr auto kDevice = cells("usb", kDeviceLines);
constexpr Line kPrinterLines[] = {
    {"default",        {"is-default"},       flag},
    {"status",         {"status"},           text},
    {"fax",            {"is-fax"},           flag},
    {"uri",            {"uri"},              text},
    {"driver_version", {"driver-version"},   text},
    {"ppd",            {"ppd"},              text},
    {"ppd_version",    {"ppd-file-version"}, text},
    {"print_server",   {"print-server"},     text},
    {"scanner_uuid",   {"scanner-uuid"},     text},
    {"scanner_app",    {"scanner-app-path"}, text},
};
constexpr auto kPrinter = cells("printers", kPrinterLines);

void readDevice(const TagView& device, Row& row) {
  constexpr std::size_t kSpeed = columnAt("usb", "speed_mbit_s");
  write(kDevice, device, row);
  row[columnAt("usb", "name")] = word(device.value());
  row[columnAt("usb", "hub")] = false;  // only what ends a branch of the tree is listed
  if (const double* speed = std::get_if<double>(&row[kSpeed])) {
    if (propertyOf(device, "device-speed", "units") == "Gbit-s") row[kSpeed] = *speed * 1000;
  }
}

void readPrinter(const TagView& printer, const char* kind, TableData& table) {
  Row& row = addRow(table, kPrintersTable);
  write(kPrinter, printer, row);
  row[columnAt("printers", "name")] = textValue(printer.value());
  row[columnAt("printers", "kind")] = kind;
}

}  // namespace

void readAdapters(const TagView& top, Description& machine) {
  const auto adapters = find(top, {"Network", "Adapters"});
  if (!adapters) return;
  TableData& table = machine[kAdaptersTable];
  table.recorded = true;
  forEach(*adapters, "net-adapter:", [&table](const TagView& adapter) {
    Row& row = addRow(table, kAdaptersTable);
    write(kAdapter, adapter, row);
    row[columnAt("adapters", "name")] = textValue(adapter.value());
  });
}

void readUsb(const TagView& top, Description& machine) {
  const auto devices = find(top, {"Peripherals", "USB"});
  if (!devices) return;
  TableData& table = machine[kUsbTable];
  table.recorded = true;
  forEach(*devices, "Device:", [&table](const TagView& device) {
    readDevice(device, addRow(table, kUsbTable));
  });
}

void readPrinters(const TagView& top, Description& machine) {
  TableData& table = machine[kPrintersTable];
  if (const auto printers = find(top, {"Peripherals", "Printers"})) {
    table.recorded = true;
    forEach(*printers, "Printer:", [&table](const TagView& printer) {
      readPrinter(printer, printer.property("kind") == "MFP" ? "multifunction" : "printer", table);
    });
  }
  if (const auto scanners = find(top, {"Peripherals", "Scanners"})) {
    table.recorded = true;
    forEach(*scanners, "Scanner:", [&table](const TagView& scanner) {
      readPrinter(scanner, "scanner", table);
    });
  }
}

}  // namespace machine::snapshot
