#include "show/facts.h"

#include <algorithm>
#include <unordered_map>

#include "base/formatString.h"
#include "show/figures.h"

namespace show {

using machine::Description;
using machine::isKnown;
using machine::Row;
using machine::Value;

std::string nameOf(const Description& machine) {
  static constexpr std::size_t kNames[] = {at("machine", "name"), at("machine", "local_hostname"),
                                           at("machine", "netbios_name"),
                                           at("machine", "model_name"), at("machine", "model_id")};
  for (const std::size_t column : kNames) {
    if (isKnown(machine.machine(column))) return text(machine.machine(column));
  }
  return "a Mac";
}

std::string modelText(const Description& machine) {
  const std::string name = text(machine.machine(at("machine", "model_name")));
  const std::string id = text(machine.machine(at("machine", "model_id")));
  return name.empty() || id.empty() ? name + id : name + " (" + id + ")";
}

std::string scanTime(const Description& machine) {
  const std::string_view scanned = machine::textOf(machine.machine(at("machine", "scanned_at")));
  if (scanned.size() < 16) return "";
  return onOneLine(scanned.substr(0, 10)) + " " + onOneLine(scanned.substr(11, 5));
}

namespace {

std::string uptime(const std::optional<std::int64_t>& seconds) {
  constexpr std::int64_t kDay = 86400;
  if (!seconds || *seconds < kDay) return "";
  return "up " + count(static_cast<std::size_t>(*seconds / kDay), "day");
}

std::string cores(const Description& machine) {
  const auto many = [&machine](std::size_t column, const char* kind) {
    const auto cores = integer(machine.machine(column));
    return cores && *cores > 0 ? std::to_string(*cores) + kind : "";
  };
  const std::string kinds = joined({many(at("machine", "super_cores"), " super"),
                                    many(at("machine", "performance_cores"), " performance"),
                                    many(at("machine", "efficiency_cores"), " efficiency")},
                                   " + ");
  if (!kinds.empty()) return kinds + " cores";
  const std::string all = many(at("machine", "cores"), " core");
  return all.empty() || all == "1 core" ? all : all + "s";
}

}  // namespace

std::string systemText(const Description& machine) {
  const std::string build = text(machine.machine(at("machine", "os_build")));
  return joined({joined({text(machine.machine(at("machine", "os_name"))),
                         text(machine.machine(at("machine", "os_version"))),
                         build.empty() ? "" : "(" + build + ")",
                         text(machine.machine(at("machine", "os_marketing_name")))},
                        " "),
                 text(machine.machine(at("machine", "architecture"))),
                 uptime(integer(machine.machine(at("machine", "uptime_seconds"))))});
}

std::string chipText(const Description& machine) {
  const auto packages = integer(machine.machine(at("machine", "packages")));
  const auto clock = integer(machine.machine(at("machine", "clock_mhz")));
  const std::string chip = text(machine.machine(at("machine", "chip")));
  const bool several = packages && *packages > 1 && !chip.empty();
  return joined(
      {several ? std::to_string(*packages) + " x " + chip : chip,
       clock && *clock > 0 ? formatString("%.3g GHz", static_cast<double>(*clock) / 1000) : "",
       cores(machine)});
}

std::string memoryText(const Description& machine) {
  std::string type;
  bool oneType = true;
  std::size_t slots = 0;
  std::size_t used = 0;
  bool soldered = false;
  for (const Row& row : rowsOf(machine, "memory")) {
    const std::string_view own = machine::textOf(row[at("memory", "type")]);
    if (type.empty()) type = own;
    oneType = oneType && (own.empty() || own == type);
    const bool changeable = !isTrue(row[at("memory", "soldered")]);
    soldered = soldered || !changeable;
    // An empty slot of a snapshot has no name.
    if (!changeable || !isKnown(row[at("memory", "used")])) continue;
    ++slots;
    used += isTrue(row[at("memory", "used")]) ? 1 : 0;
  }
  const std::string total = memorySize(integer(machine.machine(at("machine", "memory_mb"))));
  return joined(
      {joined({total, oneType ? onOneLine(type) : ""}, " "), soldered ? "soldered" : "",
       slots == 0 ? "" : formatString("%zu of ", used) + count(slots, "slot") + " in use"});
}

// Apple silicon has its graphics in the chip, which has a line.
std::string graphicsText(const Description& machine) {
  std::vector<std::string> adapters;
  for (const Row& row : rowsOf(machine, "video")) {
    const Value& model = row[at("video", "model")];
    if (!isKnown(model) || model == machine.machine(at("machine", "chip"))) continue;
    adapters.push_back(
        joined({text(model), memorySize(integer(row[at("video", "memory_mb")]))}, " "));
  }
  return joined(adapters);
}

std::string batteryText(const Description& machine) {
  if (rowsOf(machine, "battery").empty()) return "";
  const Row& row = rowsOf(machine, "battery").front();
  const auto percent = [&row](std::size_t column, const char* what) {
    const auto part = integer(row[column]);
    return part ? std::to_string(*part) + " % " + what : "";
  };
  const auto cycles = integer(row[at("battery", "cycles")]);
  return joined({percent(at("battery", "maximum_capacity_pct"), "of its capacity left"),
                 cycles && *cycles >= 0 ? count(static_cast<std::size_t>(*cycles), "cycle") : "",
                 text(row[at("battery", "condition")]),
                 percent(at("battery", "charge_pct"), "charged")});
}

std::string softwareText(const Description& machine) {
  const std::vector<Row>& rows = rowsOf(machine, "software");
  const auto origin = [](const Row& row) { return machine::textOf(row[at("software", "origin")]); };
  const auto strange = static_cast<std::size_t>(
      std::ranges::count_if(rows, [&](const Row& row) { return origin(row) == "unknown"; }));
  return rows.empty()
             ? ""
             : joined(
                   {count(rows.size(), "application"),
                    strange == 0 ? "" : formatString("%zu not from a known developer", strange)});
}

std::string attachedText(const Description& machine) {
  const auto usb = static_cast<std::size_t>(std::ranges::count_if(
      rowsOf(machine, "usb"), [](const Row& row) { return !isTrue(row[at("usb", "hub")]); }));
  const std::size_t printers = rowsOf(machine, "printers").size();
  return joined(
      {usb == 0 ? "" : count(usb, "USB device"), printers == 0 ? "" : count(printers, "printer")});
}

std::string displayName(const Row& display) {
  const auto diagonal = known<double>(display[at("displays", "diagonal_in")]);
  return joined(
      {text(display[at("displays", "name")]), diagonal ? formatString("%.3g\"", *diagonal) : ""},
      " ");
}

std::string displayMode(const Row& display) {
  const auto width = integer(display[at("displays", "width_px")]);
  const auto height = integer(display[at("displays", "height_px")]);
  const std::string pixels =
      width && height ? std::to_string(*width) + " x " + std::to_string(*height) : "";
  return joined({pixels, isTrue(display[at("displays", "built_in")]) ? "built-in" : "",
                 isTrue(display[at("displays", "virtual")]) ? "virtual" : ""});
}

std::string displayText(const Row& display) {
  return joined({displayName(display), displayMode(display)});
}

std::string diskText(const Row& disk) {
  std::string kind = text(disk[at("disks", "kind")]);
  if (kind == "ssd") kind = "SSD";
  if (kind == "rotational") kind = "HDD";
  const auto internal = known<bool>(disk[at("disks", "internal")]);
  const char* place = !internal ? "" : *internal ? "internal" : "external";
  const Value& model = disk[at("disks", "model")];
  return joined({isKnown(model) ? text(model) : "unnamed",
                 joined({size(integer(disk[at("disks", "size_bytes")])), kind}, " "), place});
}

namespace {

bool startedFrom(const Row& volume) {
  return machine::textOf(volume[at("volumes", "mount_point")]) == "/";
}

bool isImage(const Pool& pool) {
  return machine::textOf((*pool.volume)[at("volumes", "disk_model")]) == "Disk Image";
}

}  // namespace

std::vector<Pool> pools(const Description& machine) {
  std::vector<Pool> found;
  std::unordered_map<std::string_view, std::size_t> byContainer;  // the place in `found`
  for (const Row& row : rowsOf(machine, "volumes")) {
    const std::string_view container = machine::textOf(row[at("volumes", "container")]);
    const auto known = byContainer.find(container);
    if (known == byContainer.end()) {
      if (!container.empty()) byContainer.emplace(container, found.size());
      found.push_back({&row, {}});
      continue;
    }
    Pool& pool = found[known->second];
    pool.others.push_back(&row);
    if (startedFrom(row)) std::swap(pool.volume, pool.others.back());
  }
  std::stable_partition(found.begin(), found.end(),
                        [](const Pool& pool) { return startedFrom(*pool.volume); });
  std::stable_partition(found.begin(), found.end(),
                        [](const Pool& pool) { return !isImage(pool); });
  return found;
}

std::string poolKind(const Pool& pool) {
  return joined({isTrue((*pool.volume)[at("volumes", "encrypted")]) ? "encrypted" : "",
                 text((*pool.volume)[at("volumes", "file_system")])},
                " ");
}

std::optional<Space> spaceOf(const Pool& pool) {
  const auto whole = integer((*pool.volume)[at("volumes", "size_bytes")]);
  const auto free = integer((*pool.volume)[at("volumes", "free_bytes")]);
  if (!whole || !free || *whole <= 0 || *free < 0 || *free > *whole) return std::nullopt;
  return Space{*whole - *free, *whole};
}

}  // namespace show
