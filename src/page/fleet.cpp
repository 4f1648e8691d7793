#include "page/fleet.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

#include "base/formatString.h"
#include "page/drawing.h"
#include "page/html.h"
#include "page/parts.h"
#include "show/columns.h"
#include "show/figures.h"
#include "show/terminal.h"

namespace page {

using inspect::MachineList;
using inspect::Overview;
using inspect::Share;
using show::joined;

namespace {

constexpr std::size_t kShown = 12;    // rows of a chart before the others are folded
constexpr std::size_t kFolded = 100;  // rows of a fold

// Texts of machines that stand in lists, so that one of them cannot fill the page.
std::string shortened(std::string_view text) {
  constexpr std::size_t kColumns = 60;
  return show::cut(show::onOneLine(text), kColumns);
}

// "10,000"
std::string figure(std::size_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t place = digits.size(); place > 3;) digits.insert(place -= 3, ",");
  return digits;
}

std::string counted(std::size_t number, const std::string& thing) {
  return figure(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string percent(std::size_t part, std::size_t whole) {
  const double share =
      100 * static_cast<double>(part) / static_cast<double>(std::max<std::size_t>(1, whole));
  if (part > 0 && share < 1) return "<1 %";
  return formatString("%.0f %%", part < whole ? std::min(share, 99.0) : share);
}

class FleetPage {
 public:
  FleetPage(Html& html, const Overview& overview) : html_(html), fleet_(overview) {}

  void write(std::string_view program) {
    {
      const auto header = html_.in("header");
      html_.element("h1", "A fleet of " + counted(fleet_.machines, "machine"));
      html_.element("p", "each by its latest scan");
      writeHead();
    }
    {
      const auto main = html_.in("main", {"id", "main"});
      {
        const auto beside = html_.in("div", {"class", "beside shares"});
        writeSystems();
        writeModels();
        writeMemory();
        writeFreeSpace();
        writeAges();
      }
      writeFindings();
      writeSoftware();
    }
    const auto footer = html_.in("footer");
    writeMaker(html_, program);
  }

 private:
  // --- What there is

  void writeHead() {
    struct Tile {
      const char* label;
      std::string words;
      std::string below;
    };
    const auto day = [](const std::string& time) { return time.substr(0, 10); };
    const auto hour = [](const std::string& time) {
      return time.size() < 16 ? "" : "at " + time.substr(11, 5);
    };
    const std::string unseen =
        formatString("machines, for %d days or longer", Overview::kUnseenDays);
    const std::string bytes = show::size(fleet_.fileBytes) + " of files";
    const Tile tiles[] = {
        {"Scans",           figure(fleet_.scans),        bytes                  },
        {"First scan",      day(fleet_.firstScan),       hour(fleet_.firstScan) },
        {"Last scan",       day(fleet_.lastScan),        hour(fleet_.lastScan)  },
        {"Not seen lately", figure(fleet_.unseen.count), unseen                 },
        {"Worth a look",    figure(fleet_.withRemarks),  "machines with remarks"},
    };
    const auto list = html_.in("dl", {"class", "tiles"});
    for (const Tile& tile : tiles) {
      const auto pair = html_.in("div");
      html_.element("dt", tile.label);
      const auto words = html_.in("dd");
      if (tile.words.empty()) {
        html_.unknown();
      } else {
        html_.element("b", tile.words);
      }
      html_.text(" ");
      html_.element("small", tile.below);
    }
  }

  // --- Distributions

  Measure measure(std::string label, std::size_t machines, Tone tone = Tone::Usual) const {
    std::string share = percent(machines, fleet_.machines);
    // Blanks as wide as a digit, so that shares stand below each other.
    constexpr std::size_t kWidth = std::string_view("100 %").size();
    for (std::size_t size = share.size(); size < kWidth; ++size) share.insert(0, "\xE2\x80\x87");
    return {std::move(label), static_cast<double>(machines),
            figure(machines) + "\xE2\x80\x83" + share, tone, ""};
  }

  // In their order; when there are many, the smaller ones are folded.
  void writeDistribution(const std::string& thing, std::vector<Measure> measures) {
    std::vector<Measure> others;
    if (measures.size() > kShown + 1) {
      std::vector<double> amounts;
      std::ranges::transform(measures, std::back_inserter(amounts), &Measure::amount);
      std::ranges::sort(amounts, std::greater());
      const double least = amounts[kShown - 1];
      // Of those with just that many, so many still have room.
      auto room = std::count(amounts.begin(), amounts.begin() + kShown, least);
      std::vector<Measure> shown;
      for (Measure& one : measures) {
        const bool fits = one.amount > least || (one.amount == least && room-- > 0);
        (fits ? shown : others).push_back(std::move(one));
      }
      measures = std::move(shown);
    }
    double rest = 0;
    for (const Measure& one : others) rest += one.amount;
    if (!others.empty()) {
      measures.push_back(
          measure(counted(others.size(), "other " + thing), static_cast<std::size_t>(rest)));
    }
    drawChart(html_, "", measures);
    if (others.empty()) return;
    writeFold("The other " + thing + "s", others);
  }

  void writeFold(const std::string& title, std::span<const Measure> measures) {
    const auto fold = beginFold(html_, title, measures.size(), false);
    drawChart(html_, "", measures.first(std::min(measures.size(), kFolded)));
    if (measures.size() <= kFolded) return;
    html_.element("p", "and " + figure(measures.size() - kFolded) + " more");
  }

  // What the machines are of that the chart leaves out.
  void writeUnknown(std::size_t known) {
    if (known >= fleet_.machines) return;
    const std::size_t unknown = fleet_.machines - known;
    html_.element("p",
                  "Not known of " + counted(unknown, "machine") + ", " +
                      percent(unknown, fleet_.machines) + ".",
                  {"class", "dim"});
  }

  void writeSystems() {
    const auto section = beginSection(html_, "systems", "Systems");
    // By their numbers, the newest first: 26.1 before 15.7 before 10.14.6.
    using Numbers = std::vector<long>;
    const auto numbersOf = [](const std::string& version) {
      Numbers numbers;
      for (const char* at = version.c_str(); *at >= '0' && *at <= '9';) {
        char* end = nullptr;
        numbers.push_back(std::strtol(at, &end, 10));
        at = *end == '.' ? end + 1 : end;
      }
      return numbers;
    };
    std::vector<std::pair<Numbers, const Overview::System*>> order;
    std::size_t known = 0;
    for (const Overview::System& system : fleet_.systems) {
      order.emplace_back(numbersOf(system.version), &system);
      known += system.machines;
    }
    std::ranges::stable_sort(order, std::greater(), [](const auto& one) { return one.first; });

    // Systems are told apart by one number, or two below 11: "10.14".
    std::vector<std::pair<Numbers, std::size_t>> groups;
    std::vector<Measure> systems;
    std::vector<Measure> versions;
    for (const auto& [numbers, system] : order) {
      versions.push_back(measure(joined({system->name, system->version}, " "), system->machines));
      const std::size_t telling = numbers.empty() || numbers[0] > 10 ? 1 : 2;
      const Numbers group(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                 telling, numbers.size())));
      if (groups.empty() || group.empty() || groups.back().first != group) {
        groups.emplace_back(group, 0);
        std::string number;
        for (const long part : group) number += (number.empty() ? "" : ".") + std::to_string(part);
        systems.push_back(measure(
            joined({system->name, number.empty() ? system->version : number, system->marketingName},
                   " "),
            0));
      }
      groups.back().second += system->machines;
      systems.back() = measure(systems.back().label, groups.back().second);
    }
    writeDistribution("system", std::move(systems));
    writeUnknown(known);
    if (versions.size() > groups.size()) writeFold("Versions", versions);
  }

  void writeModels() {
    const auto section = beginSection(html_, "models", "Models");
    std::vector<Measure> measures;
    std::size_t known = 0;
    for (const Overview::Model& model : fleet_.models) {
      measures.push_back(measure(model.name.empty() ? model.id : model.name + " (" + model.id + ")",
                                 model.machines));
      known += model.machines;
    }
    writeDistribution("model", std::move(measures));
    writeUnknown(known);
  }

  void writeMemory() {
    const auto section = beginSection(html_, "memory", "Memory");
    std::vector<Measure> measures;
    std::size_t known = 0;
    for (const Overview::Memory& memory : fleet_.memory) {
      measures.push_back(measure(show::memorySize(memory.megabytes), memory.machines));
      known += memory.machines;
    }
    writeDistribution("amount", std::move(measures));
    writeUnknown(known);
  }

  std::size_t drawShares(const std::vector<Share>& shares, Tone first) {
    std::vector<Measure> measures;
    std::size_t known = 0;
    for (const Share& share : shares) {
      measures.push_back(
          measure(share.label, share.machines, measures.empty() ? first : Tone::Usual));
      known += share.machines;
    }
    drawChart(html_, "", measures);
    return known;
  }

  void writeFreeSpace() {
    const auto section = beginSection(html_, "free-space", "Free space of the startup volume");
    writeUnknown(drawShares(fleet_.freeSpace, Tone::Bad));
  }

  void writeAges() {
    const auto section = beginSection(html_, "ages", "Age of the latest scan");
    writeUnknown(drawShares(fleet_.ages, Tone::Usual));
    if (fleet_.unseen.count == 0) return;
    const auto fold = html_.in("details");
    {
      const auto summary = html_.in("summary");
      html_.element("h3", formatString("Not scanned for %d days", Overview::kUnseenDays));
      html_.text(" ");
      html_.element("small", counted(fleet_.unseen.count, "machine"));
    }
    writeMachines(
        fleet_.unseen, "the longest first",
        "SELECT machine_serial, scanned_at FROM scans WHERE latest ORDER BY scanned_unix");
  }

  // --- Machines

  void writeMachines(const MachineList& machines, const char* order, const std::string& query) {
    if (machines.count > machines.first.size()) {
      const auto line = html_.in("p", {"class", "dim"});
      html_.text(counted(machines.first.size(), "machine") + " of " + figure(machines.count) +
                 ", " + order + "; all of them: ");
      html_.element("code", query);
    }
    const auto list = html_.in("ul", {"class", "machines"});
    for (const MachineList::Machine& machine : machines.first) {
      const auto item = html_.in("li");
      html_.isolated(shortened(machine.name.empty() ? "a Mac" : machine.name));
      html_.text(" ");
      html_.element("small", shortened(machine.owner));
      if (machine.detail.empty()) continue;
      html_.text(" ");
      html_.element("small", shortened(machine.detail));
    }
  }

  struct Grade {
    inspect::Severity severity;
    const char* style;
  };
  static constexpr Grade kGrades[] = {
      {inspect::Severity::Damage,     "tag bad" },
      {inspect::Severity::Remark,     "tag warn"},
      {inspect::Severity::Incomplete, "tag warn"},
      {inspect::Severity::Limit,      "tag"     },
  };

  void writeFindings() {
    const auto section = beginSection(html_, "findings", "Findings");
    if (fleet_.findings.empty()) {
      html_.element("p", "Nothing that somebody would have to act on.");
      return;
    }
    for (const Grade& grade : kGrades) {
      std::vector<const Overview::Found*> findings;
      for (const Overview::Found& found : fleet_.findings) {
        if (found.kind->severity == grade.severity) findings.push_back(&found);
      }
      std::ranges::stable_sort(findings, std::greater(),
                               [](const auto* found) { return found->machines.count; });
      for (const Overview::Found* found : findings) writeFinding(*found, grade);
    }
  }

  void writeFinding(const Overview::Found& found, const Grade& grade) {
    const MachineList& machines = found.machines;
    const auto fold = html_.in("details");
    {
      const auto summary = html_.in("summary", {"class", "found"});
      html_.element("span", inspect::severityName(grade.severity), {"class", grade.style});
      html_.text(" ");
      html_.element("h3", found.kind->title);
      html_.text(" ");
      drawBar(html_, static_cast<double>(machines.count) / static_cast<double>(fleet_.machines),
              "");
      html_.text(" ");
      html_.element("small",
                    joined({counted(machines.count, "machine"),
                            percent(machines.count, fleet_.machines), std::string(found.kind->id)},
                           " \xC2\xB7 "));
    }
    writeMachines(machines, "the first that were loaded",
                  "SELECT machine_serial, text FROM findings_now WHERE id = '" +
                      std::string(found.kind->id) + "'");
  }

  // --- Software

  void writeSoftware() {
    const auto section = beginSection(html_, "software", "Software by spread");
    if (fleet_.software.empty() && fleet_.everywhere.empty()) {
      html_.element("p", "None.", {"class", "dim"});
      return;
    }
    const auto all = html_.in("div", {"class", "spread"});
    const std::vector<Measure> some = measuresOf(fleet_.software);
    constexpr std::size_t kFirst = 25;
    drawChart(html_, "With the versions that most machines have.",
              std::span(some).first(std::min(kFirst, some.size())));
    if (some.size() > kFirst) {
      const auto fold = beginFold(html_, "The next", some.size() - kFirst, false);
      drawChart(html_, "", std::span(some).subspan(kFirst));
    }
    writeRest(fleet_.software, fleet_.otherSoftware);
    if (fleet_.everywhere.empty()) return;
    const std::vector<Measure> everywhere = measuresOf(fleet_.everywhere);
    const auto fold = beginFold(html_, "On nearly all machines", everywhere.size(), false);
    drawChart(html_, "", everywhere);
    writeRest(fleet_.everywhere, fleet_.otherEverywhere);
  }

  std::vector<Measure> measuresOf(const std::vector<Overview::Application>& software) const {
    std::vector<Measure> measures;
    for (const Overview::Application& application : software) {
      std::vector<std::string> versions;
      for (const Share& version : application.versions) {
        versions.push_back((version.label.empty() ? "not known" : shortened(version.label)) +
                           " on " + figure(version.machines));
      }
      if (application.otherVersions > 0) {
        versions.push_back(counted(application.otherVersions, "other version"));
      }
      measures.push_back(measure(shortened(application.name), application.machines));
      measures.back().below = joined(versions);
    }
    return measures;
  }

  void writeRest(const std::vector<Overview::Application>& shown, std::size_t others) {
    if (others == 0) return;
    html_.element("p",
                  counted(others, "other application") + " on " +
                      counted(shown.back().machines, "machine") + " or fewer each.",
                  {"class", "dim"});
  }

  Html& html_;
  const Overview& fleet_;
};

}  // namespace

std::string fleet(const Overview& overview, std::string_view program) {
  return document(counted(overview.machines, "machine"),
                  [&](Html& html) { FleetPage(html, overview).write(program); });
}

}  // namespace page
