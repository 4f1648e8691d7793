#include "show/card.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "inspect/findings.h"
#include "show/age.h"
#include "show/columns.h"
#include "show/facts.h"
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
  const std::string agent = text(machine.machine(at("machine", "agent_version")));
  const char* kind = machine.source() == machine::Source::Debug ? "debug file" : "snapshot";
  return {
      {{nameOf(machine), Style::Bold}},
      { kind + (agent.empty() ? "" : ", agent " + agent),                    Style::Dim}
  };
}

// The model gives way where the line is too long: the serial number is what people look for.
StyledLine identity(const Description& machine, std::int64_t now, std::size_t width) {
  const bool isVirtual = isTrue(machine.machine(at("machine", "virtual")));
  std::string when = scanTime(machine);
  if (!when.empty()) {
    const std::string_view scanned = machine::textOf(machine.machine(at("machine", "scanned_at")));
    when = joined({"scanned " + when, age(scanned, now)});
  }
  const std::string serial = text(machine.machine(at("machine", "serial")));
  const std::string what = joined({modelText(machine), isVirtual ? "virtual" : ""});
  const std::size_t others = columnsOf(serial) + columnsOf(when) + 4;
  return {
      {{joined({width > others ? cut(what, width - others) : what, serial}, "  ")}},
      { when,                                                                 Style::Dim}
  };
}

Item display(const Row& row) {
  return {{displayText(row)}};
}

Item disk(const Row& row) {
  std::vector<Span> spans{{diskText(row)}};
  const std::string_view health = machine::textOf(row[at("disks", "health")]);
  if (health != "verified" && health != "failing") return spans;
  spans.push_back({", "});
  spans.push_back(health == "failing" ? Span{"failing", Style::Bad} : Span{"healthy", Style::Good});
  return spans;
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

Item volume(const Pool& pool, bool bars) {
  const Row& row = *pool.volume;
  const std::string more = pool.others.empty() ? "" : " +" + std::to_string(pool.others.size());
  const Value& name = row[at("volumes", "name")];
  const std::string called = text(isKnown(name) ? name : row[at("volumes", "mount_point")]);
  std::vector<Span> spans{
      {padded(cut(called, kVolumeName - more.size()) + more, kVolumeName) + " "}};
  const std::string kind = poolKind(pool);
  const auto space = spaceOf(pool);
  if (!space) {
    spans.push_back({joined({size(integer(row[at("volumes", "size_bytes")])), kind})});
    return spans;
  }
  const double share = static_cast<double>(space->used) / static_cast<double>(space->whole);
  const Style style = inspect::isNearlyFull(row) ? Style::Bad : Style::Plain;
  if (bars) {
    const auto full = static_cast<std::size_t>(std::lround(share * static_cast<double>(kBar)));
    spans.push_back({repeated("█", full), style});
    spans.push_back({repeated("░", kBar - full) + " ", Style::Dim});
  }
  spans.push_back({sizeOf(space->used, space->whole) + " used", bars ? Style::Plain : style});
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
