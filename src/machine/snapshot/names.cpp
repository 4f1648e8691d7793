#include <algorithm>

#include "machine/secretPlaces.h"

namespace machine {

namespace {

// What docs/schema.md names, in the order of ASCII.
// clang-format off
constexpr std::string_view kNames[] = {
    "64bit-app", "Adapters", "Apps", "AssetInfo", "CD", "Chassis", "Computer-system", "Device",
    "Environment", "Firewall", "General-info", "HDD", "Libraries", "Logical-disks", "Mem-slots",
    "Memory", "Memory-slot", "Modes", "Monitor", "Monitors", "Network", "OS", "Peripherals",
    "Physical-disks", "PowerManagement", "Printer", "Printers", "Processes", "Processor",
    "Processors", "Profile", "Removable", "Scanner", "Scanners", "Security", "Services",
    "Snapshot", "Soft", "Software", "Storage", "System", "USB", "User-accounts", "Video", "alias",
    "app", "app-store", "architecture", "aspect-ratio", "asset-tag", "asset-type",
    "auto-icon-type", "auto-restart-on-power-loss", "bank-label", "base-value", "bcd-device",
    "bsd-device-name", "bsd-name", "built-in", "bus", "bus-power", "bus-power-used", "capacity",
    "chassis-manuf", "client-version", "cmd-line", "comment", "complex", "control", "core-count",
    "cores", "cpu-count", "cpu-count-virtual", "cpu-manuf", "cpu-model", "cpu-speed",
    "current-clock-speed", "default-gateway", "descr", "description", "device-id", "device-speed",
    "diagonal", "disk", "disk-sleep-timer", "display-sleep-timer", "display-sleep-uses-dim",
    "domain", "driver-version", "edid-version", "env-var", "error-message", "file-sys",
    "first-scan", "free", "free%", "frequency", "fullname", "fw-log", "fw-rev", "fw-status",
    "group", "hdd-capacity", "hdir", "height", "hor-freq-max", "hor-freq-min", "hostname",
    "icon-type", "id", "image-height", "image-width", "info", "input", "inst-date", "int-name",
    "interface", "interlaced", "inv-number", "ip-address", "ip-subnet", "is-default", "is-fax",
    "is-system-user", "kernel", "kind", "l2-cache-size", "l3-cache-size", "last-scan", "library",
    "login", "mac-address", "machine", "main", "manuf", "manuf-by-mac", "manuf-date",
    "manufacturer", "max", "max-pixel-clock", "mb-manuf", "media-type", "mediatype", "mem-slot",
    "mem-type", "memory", "mode", "model", "monitor-count", "monitor-diag", "mount-point", "name",
    "net-adapter", "os", "os-arch", "os-manuf", "os-name", "os-sp", "os-ver", "partition",
    "partitions", "path", "pcie-width", "phys-memory", "physical-memory", "pid", "pixels", "pos",
    "ppd", "ppd-file-version", "ppid", "preferred", "print-server", "process", "product-id",
    "reduce-brightness", "resolution", "revision-id", "rom-revision", "runtime-environment",
    "scan-attempt", "scan-subtype", "scan-time", "scan-type", "scanner-app-path",
    "scanner-app-version", "scanner-uuid", "serial", "serial-number", "service", "shell", "size",
    "sleep-on-power-button", "snapshot-list", "snapshot-types", "snaptype", "speed", "split",
    "static-ip", "status", "stealth-mode", "sys", "system", "system-manuf", "system-model",
    "system-sleep-timer", "timestamp", "type", "units", "update", "uptime", "uri", "used", "used%",
    "user", "user-name", "users", "usr-acc", "uuid", "val-units", "value", "vendor", "vendor-id",
    "version", "vert-freq-max", "vert-freq-min", "video-adapter", "video-ram", "video-res",
    "virtual", "virtual-type", "wake-on-ac-change", "wake-on-clamshell-open", "wake-on-lan",
    "width",
};
// clang-format on
static_assert(std::ranges::is_sorted(kNames));

}  // namespace

bool isSnapshotName(std::string_view name) {
  return std::ranges::binary_search(kNames, name);
}

}  // namespace machine
