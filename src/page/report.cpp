#include "page/report.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/formatString.h"
#include "inspect/findings.h"
#include "inspect/letterCase.h"
#include "page/drawing.h"
#include "page/html.h"
#include "page/parts.h"
#include "page/table.h"
#include "show/changes.h"
#include "show/facts.h"
#include "show/figures.h"

namespace page {

using machine::Description;
using machine::isKnown;
using machine::Row;
using show::at;
using show::integer;
using show::isTrue;
using show::joined;
using show::known;
using show::rowsOf;
using show::text;

namespace {

std::string textAt(const Description& machine, std::size_t column) {
  return text(machine.machine(column));
}

void isolatedIn(Html& html, Name element, std::string_view words) {
  const auto around = html.in(element);
  html.isolated(words);
}

// A list of what is drawn, a sentence at its end for what is more than anybody looks at: all of it
// stands in its table, too.
constexpr std::size_t kMostDrawn = 50;

std::string theOthers(std::size_t many, std::string_view table) {
  return std::to_string(many - kMostDrawn) + " more, in the table of " + std::string(table);
}

template <typename Item, typename Draw>
void drawList(Html& html, std::string_view style, std::string_view table,
              const std::vector<Item>& items, const Draw& draw) {
  {
    const auto list = html.in("ul", {"class", style});
    for (std::size_t i = 0; i < std::min(items.size(), kMostDrawn); ++i) draw(html, items[i]);
  }
  if (items.size() <= kMostDrawn) return;
  html.element("p", "… " + theOthers(items.size(), table) + ".", {"class", "dim"});
}

// --- Findings, the gravest first

struct Grade {
  inspect::Severity severity;
  const char* style;
};
constexpr Grade kGrades[] = {
    {inspect::Severity::Damage,     "tag bad" },
    {inspect::Severity::Remark,     "tag warn"},
    {inspect::Severity::Incomplete, "tag warn"},
    {inspect::Severity::Limit,      "tag"     },
};

void writeFindings(Html& html, const Description& machine) {
  std::vector<inspect::Finding> findings = inspect::findRemarks(machine);
  std::ranges::move(inspect::findGaps(machine), std::back_inserter(findings));
  if (findings.empty()) {
    html.element("p", "Nothing that somebody would have to act on.");
    return;
  }
  const auto list = html.in("ul", {"class", "findings"});
  for (const Grade& grade : kGrades) {
    for (const inspect::Finding& finding : findings) {
      if (finding.kind->severity != grade.severity) continue;
      const auto item = html.in("li");
      html.element("span", inspect::severityName(grade.severity), {"class", grade.style});
      html.text(" ");
      const auto words = html.in("span");
      html.text(finding.text + " ");
      html.element("small", finding.kind->id);
    }
  }
}

// --- The machine

struct Fact {
  const char* label;
  std::string words;
};

void writeFacts(Html& html, const Description& machine) {
  const auto onOff = [&machine](std::size_t column) {
    const auto on = known<bool>(machine.machine(column));
    return std::string(!on ? "" : *on ? "on" : "off");
  };
  const auto both = [&machine](std::size_t first, std::size_t second) {
    return joined({textAt(machine, first), textAt(machine, second)});
  };
  const Fact facts[] = {
      {"System",                 show::systemText(machine)                                                 },
      {                                                      "Chip", show::chipText(machine)                                                                          },
      {                                               "Memory",                        show::memoryText(machine)                                                                                        },
      {          "Graphics",                  show::graphicsText(machine)},
      { "Model",          joined({show::modelText(machine), textAt(machine, at("machine", "model_number"))})                                                     },
      {                           "Serial",                   textAt(machine,                                                                       at("machine", "serial"))},
      {                                      "User",      both(at("machine",                                                                                "user"), at("machine", "user_full_name"))},
      {                                                                                                                             "Address",           both(at("machine",                                                                         "ip_address"), at("machine", "mac_address"))},
      {                                       "Attached",               show::attachedText(machine)                                               },
      {               "Firmware",          textAt(machine,                                                               at("machine", "firmware"))},
      {                                          "Integrity protection",   onOff(at("machine",                                                         "integrity_protection"))},
      {"Activation lock",        onOff(at("machine",                                                         "activation_lock"))},
  };
  const auto list = html.in("dl", {"class", "facts"});
  for (const Fact& fact : facts) {
    const auto pair = html.in("div");
    html.element("dt", fact.label);
    const auto words = html.in("dd");
    if (fact.words.empty()) {
      html.unknown();
    } else {
      html.isolated(fact.words);
    }
  }
}

// --- Storage

std::string volumeName(const Row& volume) {
  for (const char* column : {"name", "mount_point", "bsd_name"}) {
    std::string name = text(volume[machine::columnAt("volumes", column)]);
    if (!name.empty()) return name;
  }
  return "unnamed";
}

void writePool(Html& html, const show::Pool& pool) {
  const Row& volume = *pool.volume;
  const auto space = show::spaceOf(pool);
  const bool isFull = inspect::isNearlyFull(volume);
  const auto item = html.in("li");
  {
    const auto line = html.in("p");
    isolatedIn(html, "b", volumeName(volume));
    html.text(" ");
    const auto figures = html.in("span");
    if (isFull) html.element("span", "nearly full", {"class", "tag bad"});
    html.text(" " + (space ? show::sizeOf(space->used, space->whole) + " used"
                           : joined({show::size(integer(volume[at("volumes", "size_bytes")])),
                                     "use not known"})));
  }
  if (space) {
    const double share = static_cast<double>(space->used) / static_cast<double>(space->whole);
    drawBar(html, share, formatString("%.0f %% used", 100 * share),
            isFull ? Tone::Bad : Tone::Usual);
  }
  html.element("small", joined({space ? show::size(space->whole - space->used) + " free" : "",
                                show::poolKind(pool), text(volume[at("volumes", "disk_model")])}));
  if (pool.others.empty()) return;
  std::vector<std::string> others;
  for (const Row* other : pool.others) {
    if (others.size() < kMostDrawn) others.push_back(volumeName(*other));
  }
  if (others.size() < pool.others.size()) {
    others.push_back(theOthers(pool.others.size(), "volumes"));
  }
  html.text(" ");
  html.element("small", "in the same space: " + joined(others));
}

void writeDisk(Html& html, const Row& disk) {
  const auto item = html.in("li");
  const std::string_view health = machine::textOf(disk[at("disks", "health")]);
  {
    const auto line = html.in("p");
    html.isolated(show::diskText(disk));
    html.text(" ");
    if (health == "failing") html.element("span", "failing", {"class", "tag bad"});
    if (health == "verified") html.element("span", "healthy", {"class", "tag good"});
  }
  const std::string serial = text(disk[at("disks", "serial")]);
  html.element("small", joined({text(disk[at("disks", "interface")]),
                                serial.empty() ? "" : "serial " + serial}));
}

void writeStorage(Html& html, const Description& machine) {
  html.element("h3", "Volumes");
  if (hasRows(html, machine, "volumes")) {
    drawList(html, "gauges", "volumes", show::pools(machine), writePool);
  }
  html.element("h3", "Disks");
  if (hasRows(html, machine, "disks")) {
    drawList(html, "gauges", "disks", rowsOf(machine, "disks"), writeDisk);
  }
}

// --- Memory

void writeSlot(Html& html, const Row& slot) {
  const auto used = known<bool>(slot[at("memory", "used")]);
  const std::string size = show::memorySize(integer(slot[at("memory", "size_mb")]));
  const bool isBroken = inspect::isBroken(slot);
  const bool isEmpty = used ? !*used && !isBroken : size.empty();
  const auto item = html.in("li", {"class", isEmpty    ? "none"
                                            : isBroken ? "broken"
                                                       : std::string_view()});
  if (isBroken) {
    html.element("b", "does not work");
  } else if (isEmpty) {
    html.element("b", used ? "empty" : "not known");
  } else {
    html.element("b", size.empty() ? "size not known" : size);
  }
  const auto words = [&slot](std::size_t column) {
    return show::figureOf(machine::schema::kMemory[column], slot[column]);
  };
  const std::string lines[] = {
      isTrue(slot[at("memory", "soldered")]) ? "soldered" : words(at("memory", "slot")),
      joined({words(at("memory", "type")), words(at("memory", "speed_mhz"))}),
      joined({words(at("memory", "manufacturer")), words(at("memory", "part_number"))}, " "),
  };
  for (const std::string& line : lines) {
    if (line.empty()) continue;
    html.text(" ");
    html.element("small", line);
  }
}

void writeMemory(Html& html, const Description& machine) {
  const std::string words = show::memoryText(machine);
  if (!words.empty()) html.element("p", words);
  if (!hasRows(html, machine, "memory")) return;
  drawList(html, "slots", "memory", rowsOf(machine, "memory"), writeSlot);
}

// --- Displays

struct Extent {
  double width;  // inches
  double height;
  bool measured;  // else guessed from the pixels
};

// Pixels an inch of a display that does not say its size: notebooks and large monitors have their
// own.
double usualDensity(bool builtIn, double across) {
  if (across < 2600) return 110;
  return builtIn ? 230 : 160;
}

std::optional<Extent> extentOf(const Row& display) {
  constexpr double kMostPixels = 100000;
  constexpr double kMostInches = 1000;
  const auto width = integer(display[at("displays", "width_px")]);
  const auto height = integer(display[at("displays", "height_px")]);
  if (!width || !height || *width <= 0 || *height <= 0) return std::nullopt;
  const auto across = static_cast<double>(*width);
  const auto down = static_cast<double>(*height);
  if (across > kMostPixels || down > kMostPixels || across > 20 * down || down > 20 * across)
    return std::nullopt;
  const auto diagonal = known<double>(display[at("displays", "diagonal_in")]);
  const bool measured = diagonal && *diagonal >= 1 && *diagonal <= kMostInches;
  const double perInch = measured
                             ? std::hypot(across, down) / *diagonal
                             : usualDensity(isTrue(display[at("displays", "built_in")]), across);
  return Extent{across / perInch, down / perInch, measured};
}

void writeDisplays(Html& html, const Description& machine) {
  if (!hasRows(html, machine, "displays")) return;
  double largest = 0;  // side of all
  double tallest = 0;
  bool guessed = false;
  for (const Row& display : rowsOf(machine, "displays")) {
    const auto extent = extentOf(display);
    if (!extent) continue;
    largest = std::max({largest, extent->width, extent->height});
    tallest = std::max(tallest, extent->height);
    guessed = guessed || !extent->measured;
  }
  constexpr double kLargest = 13;  // in the height of a letter: fits on a telephone
  const auto writeDisplay = [&](Html& into, const Row& display) {
    const auto item = into.in("li");
    if (const auto extent = extentOf(display)) {
      const double scale = kLargest / largest;
      const std::string style = formatString("width:%.2fem;height:%.2fem;margin-top:%.2fem",
                                             scale * extent->width, scale * extent->height,
                                             scale * (tallest - extent->height));  // on one floor
      into.element("div", "", {"class", extent->measured ? "screen" : "screen none"},
                   {"style", style}, {"aria-hidden", "true"});
    }
    into.isolated(show::displayName(display));
    into.text(" ");
    into.element("span", show::displayMode(display));
    const auto refresh = known<double>(display[at("displays", "refresh_hz")]);
    into.text(" ");
    into.element("small", joined({refresh ? formatString("%.4g Hz", *refresh) : "",
                                  text(display[at("displays", "connection")]),
                                  text(display[at("displays", "adapter")])}));
  };
  drawList(html, "screens", "displays", rowsOf(machine, "displays"), writeDisplay);
  if (largest > 0) {
    html.element("p",
                 guessed
                     ? "Drawn to scale; those with a dashed line by their pixels, as their size is "
                       "not known."
                     : "Drawn to scale.",
                 {"class", "dim"});
  }
}

// --- Network

std::string words(const Row& row, std::size_t column) {
  return show::figureOf(machine::schema::kAdapters[column], row[column]);
}

void writeNetwork(Html& html, const Description& machine) {
  if (!hasRows(html, machine, "adapters")) return;
  std::vector<const Row*> active;
  std::vector<std::string> idle;
  for (const Row& row : rowsOf(machine, "adapters")) {
    if (isKnown(row[at("adapters", "ip_addresses")]) ||
        isKnown(row[at("adapters", "ipv6_addresses")])) {
      active.push_back(&row);
    } else {
      idle.push_back(joined(
          {words(row, at("adapters", "interface")), words(row, at("adapters", "name"))}, " "));
    }
  }
  const Shown columns[] = {
      {"service", [](const Row& row) { return words(row, at("adapters", "name")); }, "",
       [](const Row& row) {
         return joined(
             {words(row, at("adapters", "interface")), words(row, at("adapters", "type"))});
       }},
      {"address",
       [](const Row& row) {
         return joined({words(row, at("adapters", "ip_addresses")),
                        words(row, at("adapters", "ipv6_addresses"))});
       },                                                                          "", [](const Row& row) { return words(row, at("adapters", "mac_address")); }},
      {"set up",
       [](const Row& row) {
         return joined(
             {words(row, at("adapters", "method")), words(row, at("adapters", "wifi_network"))});
       }},
      {"router",         [](const Row& row) { return words(row, at("adapters", "gateway")); }                                                                  },
  };
  if (!active.empty()) writeTable(html, "network services in use", columns, active);
  if (!idle.empty()) html.element("p", "Without an address: " + joined(idle), {"class", "dim"});
}

// --- Battery

void writeBattery(Html& html, const Description& machine) {
  struct Gauge {
    const char* what;
    std::size_t column;
    double low;  // per cent, below which it is worth a look
  };
  static constexpr Gauge kGauges[] = {
      {"Capacity left", at("battery", "maximum_capacity_pct"), 80},
      {"Charge",        at("battery", "charge_pct"),           0 },
  };
  for (const Row& row : rowsOf(machine, "battery")) {
    {
      const auto list = html.in("ul", {"class", "gauges"});
      for (const Gauge& gauge : kGauges) {
        const auto percent = integer(row[gauge.column]);
        const auto item = html.in("li");
        {
          const auto line = html.in("p");
          html.element("b", gauge.what);
          html.text(" ");
          const auto figure = html.in("span");
          if (percent) {
            html.text(std::to_string(*percent) + " %");
          } else {
            html.unknown();
          }
        }
        if (!percent) continue;
        const auto part = static_cast<double>(*percent);
        drawBar(html, part / 100, std::to_string(*percent) + " %",
                part < gauge.low ? Tone::Bad : Tone::Usual);
      }
    }
    const auto said = [&row](std::size_t column) {
      return show::figureOf(machine::schema::kBattery[column], row[column]);
    };
    const std::string cycles = said(at("battery", "cycles"));
    const std::string serial = said(at("battery", "serial"));
    const std::string condition = said(at("battery", "condition"));
    html.element("p",
                 joined({cycles.empty() ? "" : cycles + " charge cycles",
                         condition.empty() ? "" : "condition: " + condition,
                         isTrue(row[at("battery", "charging")]) ? "charging" : "",
                         said(at("battery", "model")), serial.empty() ? "" : "serial " + serial}));
  }
}

// --- Software

enum class Group { Applications, Embedded, System };

Group groupOf(const Row& row) {
  const std::string_view path = machine::textOf(row[at("software", "path")]);
  if (path.starts_with("/System/")) return Group::System;
  if (path.find(".app/") != std::string_view::npos) return Group::Embedded;
  return machine::textOf(row[at("software", "origin")]) == "apple" ? Group::System
                                                                   : Group::Applications;
}

std::string originWords(const Row& row) {
  std::string origin = text(row[at("software", "origin")]);
  if (origin == "apple") return "Apple";
  if (origin == "app_store") return "App Store";
  if (origin == "identified_developer") return "known developer";
  if (origin == "unknown") return "unknown developer";
  return origin;
}

// Behind the first certificate stand those that vouch for it.
std::string signer(const Row& row) {
  const std::string all = show::figureOf(machine::schema::kSoftware[at("software", "signed_by")],
                                         row[at("software", "signed_by")]);
  return all.substr(0, all.find(", "));
}

void writeSoftware(Html& html, const Description& machine) {
  if (!hasRows(html, machine, "software")) return;
  struct Fold {
    Group group;
    const char* title;
    bool open;
  };
  static constexpr Fold kFolds[] = {
      {Group::Applications, "Applications",                   true },
      {Group::Embedded,     "Embedded in other applications", false},
      {Group::System,       "The system's own",               false},
  };
  const auto plain = [](std::size_t column) {
    return [column](const Row& row) {
      return show::figureOf(machine::schema::kSoftware[column], row[column]);
    };
  };
  const Shown columns[] = {
      {"name",               plain(at("software", "name")), "", plain(at("software", "path"))},
      {"version", plain(at("software",            "version"))                   },
      {"architecture",
       [](const Row& row) {
         const bool narrow = known<bool>(row[at("software", "is_64bit")]) == false;
         return joined({text(row[at("software", "architecture")]), narrow ? "32-bit" : ""});
       }},
      {"from",                    originWords                                         },
      {"signed by",                    signer},
      {"changed",            plain(at("software", "modified_on"))},
  };
  html.element("p", show::softwareText(machine));
  const auto apps = html.in("div", {"class", "apps"});
  for (const Fold& fold : kFolds) {
    std::vector<std::pair<std::string, const Row*>> byName;
    for (const Row& row : rowsOf(machine, "software")) {
      if (groupOf(row) != fold.group) continue;
      byName.emplace_back(inspect::foldCase(machine::textOf(row[at("software", "name")])), &row);
    }
    if (byName.empty()) continue;
    std::ranges::stable_sort(byName, {}, &std::pair<std::string, const Row*>::first);
    std::vector<const Row*> rows;
    rows.reserve(byName.size());
    for (const auto& [name, row] : byName) rows.push_back(row);
    const auto details = beginFold(html, fold.title, rows.size(), fold.open);
    writeTable(html, fold.title, columns, rows);
  }
}

// --- Everything else

void writeTables(Html& html, const Description& machine) {
  std::vector<std::string> empty;
  std::vector<std::string> missing;
  for (std::size_t i = 0; i < machine::kTableCount; ++i) {
    const machine::Table& table = machine::kTables[i];
    if (table.name == "software") continue;
    if (machine[i].rows.empty()) {
      (machine[i].recorded ? empty : missing).emplace_back(table.meaning);
      continue;
    }
    const auto details = beginFold(html, asTitle(table.meaning), machine[i].rows.size(), false);
    writeWholeTable(html, table, machine[i]);
  }
  if (!empty.empty()) html.element("p", "None of: " + joined(empty) + ".");
  if (!missing.empty()) html.element("p", "Not recorded in this file: " + joined(missing) + ".");
}

struct Part {
  const char* id;
  const char* title;
  bool narrow;  // beside others where there is room
  void (*write)(Html& html, const Description& machine);
};
constexpr Part kParts[] = {
    {"findings", "Findings",   false, writeFindings},
    {"machine",  "Machine",    false, writeFacts   },
    {"storage",  "Storage",    true,  writeStorage },
    {"memory",   "Memory",     true,  writeMemory  },
    {"displays", "Displays",   true,  writeDisplays},
    {"network",  "Network",    true,  writeNetwork },
    {"battery",  "Battery",    true,  writeBattery },
    {"software", "Software",   false, writeSoftware},
    {"tables",   "All tables", false, writeTables  },
};

bool isShown(const Part& part, const Description& machine) {
  return part.write != writeBattery || !rowsOf(machine, "battery").empty();
}

void writeHeader(Html& html, const Description& machine) {
  const auto header = html.in("header");
  isolatedIn(html, "h1", show::nameOf(machine));
  const bool isVirtual = isTrue(machine.machine(at("machine", "virtual")));
  html.element("p", joined({show::modelText(machine), isVirtual ? "virtual machine" : "",
                            textAt(machine, at("machine", "serial"))}));
  html.element("p", scanWords(machine));
  const auto navigation = html.in("nav", {"aria-label", "On this page"});
  const auto list = html.in("ul");
  for (const Part& part : kParts) {
    if (!isShown(part, machine)) continue;
    const auto item = html.in("li");
    html.element("a", part.title, {"href", "#" + std::string(part.id)});
  }
}

}  // namespace

std::string report(const Description& machine, std::string_view file, std::string_view program) {
  const std::string title =
      joined({show::nameOf(machine), textAt(machine, at("machine", "serial"))}) + ": inventory";
  return document(title, [&](Html& html) {
    writeHeader(html, machine);
    {
      const auto main = html.in("main", {"id", "main"});
      for (auto part = std::begin(kParts); part != std::end(kParts);) {
        const bool narrow = part->narrow;
        const auto together = html.in("div", {"class", narrow ? "beside" : std::string_view()});
        for (; part != std::end(kParts) && part->narrow == narrow; ++part) {
          if (!isShown(*part, machine)) continue;
          const auto section = beginSection(html, part->id, part->title);
          part->write(html, machine);
        }
      }
    }
    const auto footer = html.in("footer");
    writeIdentity(html, machine, file);
    writeMaker(html, program);
  });
}

}  // namespace page
