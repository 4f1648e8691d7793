#include "show/card.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "base/formatString.h"
#include "show/age.h"
#include "show/columns.h"
#include "show/figures.h"
#include "show/styledLines.h"

namespace show {

namespace {

using machine::Description;
using machine::isKnown;
using machine::Row;
using machine::Value;

constexpr std::size_t kMostLines = 23;  // a window of 24, and the prompt
constexpr std::size_t kMostColumns = 80;
constexpr std::size_t kFewestLines = 2;  // of a section with many items
constexpr std::size_t kMostItems = 6;
constexpr std::size_t kLabel = 10;
constexpr std::size_t kVolumeName = 18;
constexpr std::size_t kBar = 12;

// --- Values. A column that the schema lacks does not compile.

consteval std::size_t at(const char* table, const char* column) {
  return machine::columnAt(table, column);
}

std::string text(const Value& value) {
  return onOneLine(machine::textOf(value));
}

template <typename T>
std::optional<T> known(const Value& value) {
  const T* found = std::get_if<T>(&value);
  return found == nullptr ? std::nullopt : std::optional(*found);
}
constexpr auto integer = known<std::int64_t>;

bool isTrue(const Value& value) {
  return known<bool>(value).value_or(false);
}

const std::vector<Row>& rowsOf(const Description& machine, std::string_view table) {
  return machine[machine::tableAt(table)].rows;
}

// --- Words and lines

// A word of the shell, which the name of a second file, "MAC(1).hux", is not.
std::string shellWord(std::string_view word) {
  const bool plain = std::ranges::all_of(word, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("_-+./:,@%").find(c) != std::string_view::npos || (c & 0x80) != 0;
  });
  if (plain && !word.empty()) return std::string(word);
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

using Item = std::vector<Span>;  // one line

// Items under one label.
struct Section {
  const char* label;
  const char* thing;  // what one of many items is
  std::vector<Item> items;
  std::size_t lines;  // that it gets
};

Section section(const char* label, std::vector<Item> items, const char* thing = "") {
  std::erase_if(items, [](const Item& item) {
    return std::ranges::all_of(item, [](const Span& span) { return span.text.empty(); });
  });
  const std::size_t lines = std::min(items.size(), kFewestLines);
  return {label, thing, std::move(items), lines};
}

// Gives the lines of the screen that are left to those sections that have use for them.
void handOut(std::size_t left, std::vector<Section>& sections) {
  for (const Section& section : sections) left -= std::min(left, section.lines);
  for (std::size_t most = kFewestLines + 1; most <= kMostItems; ++most) {
    for (Section& section : sections) {
      if (left == 0 || section.items.size() < most) continue;
      section.lines = most;
      --left;
    }
  }
}

void addSection(std::vector<StyledLine>& page, Section section) {
  if (section.items.size() > section.lines) {
    const std::size_t kept = section.lines - 1;
    const std::string rest = count(section.items.size() - kept, section.thing) + " more";
    section.items.resize(kept);
    section.items.push_back({{rest}});
  }
  std::string label = section.label;
  for (Item& item : section.items) {
    StyledLine line{{{padded(label, kLabel), Style::Dim}}};
    std::ranges::move(item, std::back_inserter(line.left));
    page.push_back(std::move(line));
    label.clear();
  }
}

// --- The parts of the card, from top to bottom

StyledLine title(const Description& machine) {
  static constexpr std::size_t kNames[] = {at("machine", "name"), at("machine", "local_hostname"),
                                           at("machine", "netbios_name"),
                                           at("machine", "model_name"), at("machine", "model_id")};
  std::string name = "a Mac";
  for (const std::size_t column : kNames) {
    if (!isKnown(machine.machine(column))) continue;
    name = text(machine.machine(column));
    break;
  }
  const std::string agent = text(machine.machine(at("machine", "agent_version")));
  const char* kind = machine.source() == machine::Source::Debug ? "debug file" : "snapshot";
  return {
      {{name, Style::Bold}},
      { kind + (agent.empty() ? "" : ", agent " + agent),         Style::Dim}
  };
}

// The model gives way where the line is too long: the serial number is what people look for.
StyledLine identity(const Description& machine, std::int64_t now, std::size_t width) {
  const std::string name = text(machine.machine(at("machine", "model_name")));
  const std::string id = text(machine.machine(at("machine", "model_id")));
  const std::string model = name.empty() || id.empty() ? name + id : name + " (" + id + ")";
  const bool isVirtual = isTrue(machine.machine(at("machine", "virtual")));
  const std::string_view scanned = machine::textOf(machine.machine(at("machine", "scanned_at")));
  std::string when;
  if (scanned.size() >= 16) {
    when = "scanned " + onOneLine(scanned.substr(0, 10)) + " " + onOneLine(scanned.substr(11, 5));
    when = joined({when, age(scanned, now)});
  }
  const std::string serial = text(machine.machine(at("machine", "serial")));
  const std::string what = joined({model, isVirtual ? "virtual" : ""});
  const std::size_t others = columnsOf(serial) + columnsOf(when) + 4;
  return {
      {{joined({width > others ? cut(what, width - others) : what, serial}, "  ")}},
      { when,                                                                 Style::Dim}
  };
}

std::string uptime(const std::optional<std::int64_t>& seconds) {
  constexpr std::int64_t kDay = 86400;
  if (!seconds || *seconds < kDay) return "";
  return "up " + count(static_cast<std::size_t>(*seconds / kDay), "day");
}

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

Item display(const Row& row) {
  const std::string name = text(row[at("displays", "name")]);
  const auto diagonal = known<double>(row[at("displays", "diagonal_in")]);
  const auto width = integer(row[at("displays", "width_px")]);
  const auto height = integer(row[at("displays", "height_px")]);
  const std::string pixels =
      width && height ? std::to_string(*width) + " x " + std::to_string(*height) : "";
  return {{joined({joined({name, diagonal ? formatString("%.3g\"", *diagonal) : ""}, " "), pixels,
                   isTrue(row[at("displays", "built_in")]) ? "built-in" : "",
                   isTrue(row[at("displays", "virtual")]) ? "virtual" : ""})}};
}

Item disk(const Row& row) {
  std::string kind = text(row[at("disks", "kind")]);
  if (kind == "ssd") kind = "SSD";
  if (kind == "rotational") kind = "HDD";
  const auto internal = known<bool>(row[at("disks", "internal")]);
  const char* place = !internal ? "" : *internal ? "internal" : "external";
  const Value& model = row[at("disks", "model")];
  std::vector<Span> spans{
      {joined({isKnown(model) ? text(model) : "unnamed",
               joined({size(integer(row[at("disks", "size_bytes")])), kind}, " "), place})}};

  const std::string_view health = machine::textOf(row[at("disks", "health")]);
  if (health != "verified" && health != "failing") return spans;
  spans.push_back({", "});
  spans.push_back(health == "failing" ? Span{"failing", Style::Bad} : Span{"healthy", Style::Good});
  return spans;
}

// Volumes of one container share its space: they are one item, named after the one that the system
// started from, else after the first.
struct Pool {
  const Row* volume;
  std::size_t others = 0;
};

bool startedFrom(const Row& volume) {
  return machine::textOf(volume[at("volumes", "mount_point")]) == "/";
}

bool isImage(const Pool& pool) {
  return machine::textOf((*pool.volume)[at("volumes", "disk_model")]) == "Disk Image";
}

// That of the system first; disk images, which newer systems mount for themselves, last.
std::vector<Pool> pools(const Description& machine) {
  std::vector<Pool> found;
  std::unordered_map<std::string_view, std::size_t> byContainer;  // the place in `found`
  for (const Row& row : rowsOf(machine, "volumes")) {
    const std::string_view container = machine::textOf(row[at("volumes", "container")]);
    const auto known = byContainer.find(container);
    if (known == byContainer.end()) {
      if (!container.empty()) byContainer.emplace(container, found.size());
      found.push_back({&row});
      continue;
    }
    Pool& pool = found[known->second];
    ++pool.others;
    if (startedFrom(row)) pool.volume = &row;
  }
  std::stable_partition(found.begin(), found.end(),
                        [](const Pool& pool) { return startedFrom(*pool.volume); });
  std::stable_partition(found.begin(), found.end(),
                        [](const Pool& pool) { return !isImage(pool); });
  return found;
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

Item volume(const Pool& pool, bool bars) {
  const Row& row = *pool.volume;
  const std::string more = pool.others == 0 ? "" : " +" + std::to_string(pool.others);
  const Value& name = row[at("volumes", "name")];
  const std::string called = text(isKnown(name) ? name : row[at("volumes", "mount_point")]);
  std::vector<Span> spans{
      {padded(cut(called, kVolumeName - more.size()) + more, kVolumeName) + " "}};
  const std::string kind = joined({isTrue(row[at("volumes", "encrypted")]) ? "encrypted" : "",
                                   text(row[at("volumes", "file_system")])},
                                  " ");
  const auto whole = integer(row[at("volumes", "size_bytes")]);
  const auto free = integer(row[at("volumes", "free_bytes")]);
  if (!whole || !free || *whole <= 0 || *free < 0 || *free > *whole) {
    spans.push_back({joined({size(whole), kind})});
    return spans;
  }
  const std::int64_t used = *whole - *free;
  const double share = static_cast<double>(used) / static_cast<double>(*whole);
  const Style style = share >= 0.9 ? Style::Bad : Style::Plain;
  if (bars) {
    const auto full = static_cast<std::size_t>(std::lround(share * static_cast<double>(kBar)));
    spans.push_back({repeated("█", full), style});
    spans.push_back({repeated("░", kBar - full) + " ", Style::Dim});
  }
  spans.push_back({sizeOf(used, *whole) + " used", bars ? Style::Plain : style});
  spans.push_back({(kind.empty() ? "" : ", ") + kind});
  return spans;
}

// Services that have an address: the others are not in use.
Item adapter(const Row& row) {
  const std::string addresses = text(row[at("adapters", "ip_addresses")]);
  const std::string six = text(row[at("adapters", "ipv6_addresses")]);
  if (addresses.empty() && six.empty()) return {};
  return {{joined(
      {joined({text(row[at("adapters", "interface")]), text(row[at("adapters", "name")])}, " "),
       addresses.empty() ? six : addresses, text(row[at("adapters", "mac_address")])},
      "  ")}};
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

std::vector<StyledLine> findingLines(std::span<const std::string> findings, std::string_view file,
                                     std::size_t width) {
  if (findings.empty()) return {};
  std::vector<StyledLine> lines{{}, {{{"! " + onOneLine(findings.front()), Style::Bold}}}};
  if (findings.size() == 1) return lines;
  const std::string more =
      "! " + count(findings.size() - 1, "finding") + " more: huxutil verify --complete ";
  const std::string name = onOneLine(shellWord(file));
  const bool fits = columnsOf(more + name) <= width;  // half a command helps nobody
  lines.push_back({{{more + (fits ? name : "FILE")}}});
  return lines;
}

template <typename Things, typename Make>
std::vector<Item> each(const Things& things, Make make) {
  std::vector<Item> items;
  items.reserve(things.size());
  for (const auto& thing : things) items.push_back(make(thing));
  return items;
}

std::vector<Section> sectionsOf(const Description& machine, bool bars) {
  const auto bar = [bars](const Pool& pool) { return volume(pool, bars); };
  return {
      section("system", {{{systemText(machine)}}}),
      section("chip", {{{chipText(machine)}}}),
      section("memory", {{{memoryText(machine)}}}),
      section("graphics", {{{graphicsText(machine)}}}),
      section("display", each(rowsOf(machine, "displays"), display), "display"),
      section("disk", each(rowsOf(machine, "disks"), disk), "disk"),
      section("volume", each(pools(machine), bar), "volume"),
      section("network", each(rowsOf(machine, "adapters"), adapter), "service"),
      section("battery", {{{batteryText(machine)}}}),
      section("attached", {{{attachedText(machine)}}}),
      section("software", {{{softwareText(machine)}}}),
  };
}

}  // namespace

std::string card(const Description& machine, std::string_view file,
                 std::span<const std::string> findings, std::int64_t now,
                 const Terminal& terminal) {
  const std::size_t width =
      std::min(static_cast<std::size_t>(std::max(terminal.width, 1)), kMostColumns);
  const std::vector<StyledLine> foot = findingLines(findings, file, width);
  std::vector<Section> sections = sectionsOf(machine, terminal.terminal);

  std::vector<StyledLine> page{title(machine)};
  const StyledLine second = identity(machine, now, width);
  if (!second.left.front().text.empty() || !second.right.text.empty()) page.push_back(second);
  page.emplace_back();
  handOut(kMostLines - page.size() - foot.size(), sections);
  for (Section& section : sections) addSection(page, std::move(section));
  page.insert(page.end(), foot.begin(), foot.end());
  return render(page, width, terminal.colour);
}

}  // namespace show
