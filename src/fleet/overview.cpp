#include "fleet/overview.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/formatString.h"
#include "fleet/tables.h"

namespace fleet {

using huxread::Error;
using huxread::Result;
using inspect::MachineList;
using inspect::Overview;
using inspect::Share;

namespace {

constexpr std::int64_t kDay = 86400;

// So many values, of the smallest that is still in it on.
struct Bin {
  double from;
  const char* label;
};
constexpr Bin kFreeSpace[] = {
    {0,    "under 5 %" },
    {0.05, "5 to 10 %" },
    {0.1,  "10 to 25 %"},
    {0.25, "25 to 50 %"},
    {0.5,  "50 to 75 %"},
    {0.75, "over 75 %" },
};
constexpr Bin kAges[] = {
    {0,   "under a day"      },
    {1,   "1 to 7 days"      },
    {7,   "7 to 30 days"     },
    {30,  "30 to 90 days"    },
    {90,  "90 days to a year"},
    {365, "over a year"      },
};

std::vector<Share> emptyShares(std::span<const Bin> bins) {
  std::vector<Share> shares;
  for (const Bin& bin : bins) shares.push_back({bin.label, 0});
  return shares;
}

// What is below the first bin counts to it, as the scan of a clock that is ahead.
void countInto(std::vector<Share>& shares, std::span<const Bin> bins, double value) {
  std::size_t bin = bins.size() - 1;
  while (bin > 0 && value < bins[bin].from) --bin;
  ++shares[bin].machines;
}

// The rows of a table that the latest scans have, scan after scan: s is the scan, l the link, r the
// row. The order of the joins is said, since the library cannot know how many scans are old.
std::string latest(const std::string& columns, const std::string& table) {
  return formatString(
      "SELECT %s FROM _scans s CROSS JOIN _%s_links l ON l._id BETWEEN s.id << %d"
      " AND (s.id + 1 << %d) - 1 CROSS JOIN _%s_rows r ON r._id = l._row"
      " WHERE s.latest",
      columns.c_str(), table.c_str(), kPlaceBits, kPlaceBits, table.c_str());
}

class Asking {
 public:
  Asking(Database& database, std::int64_t now) : database_(database), now_(now) {}

  Result<Overview> all() {
    askScans();
    askMachines();
    askFreeSpace();
    askFindings();
    askSoftware();
    if (problem_) return *problem_;
    return std::move(found_);
  }

 private:
  using Take = std::function<void(const Statement& row)>;

  // After a failure nothing more is asked.
  void ask(const std::string& sql, const Take& take) {
    if (problem_) return;
    Result<Statement> query = database_.prepare(sql);
    if (!query) {
      problem_ = query.error();
      return;
    }
    Statement::Step step = query->step();
    for (; step == Statement::Step::Row; step = query->step()) take(*query);
    if (step == Statement::Step::Failed) problem_ = Error{database_.problem()};
  }

  static std::size_t count(const Statement& row, int column) {
    return static_cast<std::size_t>(std::max<std::int64_t>(0, row.integer(column)));
  }

  void askScans() {
    ask("SELECT count(*), sum(latest) FROM _scans", [this](const Statement& row) {
      found_.scans = count(row, 0);
      found_.machines = count(row, 1);
    });
    ask("SELECT sum(length(bytes)) FROM _files",
        [this](const Statement& row) { found_.fileBytes = row.integer(0); });
    for (const auto& [order, time] :
         {std::pair("", &found_.firstScan), std::pair(" DESC", &found_.lastScan)}) {
      ask(formatString("SELECT scanned_at FROM _scans WHERE scanned_unix IS NOT NULL ORDER BY"
                       " scanned_unix%s LIMIT 1",
                       order),
          [to = time](const Statement& row) { *to = row.text(0); });
    }
    found_.ages = emptyShares(kAges);
    constexpr std::int64_t kUnseen = Overview::kUnseenDays * kDay;
    ask("SELECT id, scanned_unix, scanned_at FROM _scans WHERE latest AND scanned_unix IS NOT NULL"
        " ORDER BY scanned_unix",
        [this](const Statement& row) {
          const std::int64_t age = now_ - row.integer(1);
          countInto(found_.ages, kAges, static_cast<double>(age) / static_cast<double>(kDay));
          if (age < kUnseen) return;
          if (++found_.unseen.count > MachineList::kMost) return;
          found_.unseen.first.push_back(machineOf(row.integer(0)));
          found_.unseen.first.back().detail =
              row.text(2).substr(0, std::string_view("YYYY-MM-DD").size());
        });
  }

  // Whom a list names.
  MachineList::Machine machineOf(std::int64_t scan) {
    if (!name_) {
      auto query = database_.prepare(
          latest("coalesce(r.name, r.local_hostname, r.netbios_name, r.model_name, r.model_id),"
                 " s.owner",
                 "machine") +
          " AND s.id = ?");
      if (!query) {
        problem_ = query.error();
        return {};
      }
      name_ = std::move(*query);
    }
    name_.bind(1, scan);
    MachineList::Machine machine;
    if (name_.step() == Statement::Step::Row) {
      machine = {std::string(name_.text(0)), std::string(name_.text(1)), ""};
    }
    name_.reset();
    return machine;
  }

  void askMachines() {
    const std::string machines =
        latest("r.os_name, r.os_version, max(r.os_marketing_name), count(*)", "machine");
    ask(machines + " AND r.os_version IS NOT NULL GROUP BY r.os_name, r.os_version",
        [this](const Statement& row) {
          found_.systems.push_back({std::string(row.text(0)), std::string(row.text(1)),
                                    std::string(row.text(2)), count(row, 3)});
        });
    ask(latest("r.model_id, max(r.model_name), count(*) AS machines", "machine") +
            " AND r.model_id IS NOT NULL GROUP BY r.model_id ORDER BY machines DESC, r.model_id",
        [this](const Statement& row) {
          found_.models.push_back(
              {std::string(row.text(0)), std::string(row.text(1)), count(row, 2)});
        });
    ask(latest("r.memory_mb, count(*)", "machine") +
            " AND r.memory_mb > 0 GROUP BY r.memory_mb ORDER BY r.memory_mb",
        [this](const Statement& row) {
          found_.memory.push_back({row.integer(0), count(row, 1)});
        });
  }

  void askFreeSpace() {
    found_.freeSpace = emptyShares(kFreeSpace);
    std::int64_t last = 0;
    ask(latest("s.id, r.size_bytes, l.free_bytes", "volumes") +
            " AND r.mount_point = '/' AND r.size_bytes > 0 AND l.free_bytes >= 0",
        [this, &last](const Statement& row) {
          if (std::exchange(last, row.integer(0)) == row.integer(0)) return;
          countInto(found_.freeSpace, kFreeSpace,
                    static_cast<double>(row.integer(2)) / static_cast<double>(row.integer(1)));
        });
  }

  void askFindings() {
    const auto kinds = inspect::findingKinds();
    struct Kind {
      MachineList machines;
      std::int64_t last = 0;  // scan that has it
    };
    std::vector<Kind> found(kinds.size());
    std::int64_t remarked = 0;
    ask(latest("s.id, r.id, r.text", "findings"), [&](const Statement& row) {
      const auto known = std::ranges::find(kinds, row.text(1), &inspect::FindingKind::id);
      if (known == kinds.end()) return;
      if (known->severity == inspect::Severity::Remark &&
          std::exchange(remarked, row.integer(0)) != row.integer(0)) {
        ++found_.withRemarks;
      }
      Kind& kind = found[static_cast<std::size_t>(known - kinds.begin())];
      MachineList& list = kind.machines;
      const bool again = std::exchange(kind.last, row.integer(0)) == row.integer(0);
      if (!again && ++list.count <= MachineList::kMost) {
        list.first.push_back(machineOf(row.integer(0)));
      }
      if (list.count > MachineList::kMost) return;
      // What exactly stands behind a colon: the name of the volume, of the disk.
      const std::string_view text = row.text(2);
      const std::size_t colon = text.find(": ");
      if (colon == std::string_view::npos) return;
      std::string& detail = list.first.back().detail;
      if (again && !detail.empty()) detail += ", ";
      detail += text.substr(colon + 2);
    });
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      MachineList& list = found[i].machines;
      if (list.count == 0) continue;
      std::ranges::sort(list.first, {}, &MachineList::Machine::name);
      found_.findings.push_back({&kinds[i], std::move(list)});
    }
  }

  // An application that a machine has twice is one. The rows are few and the links many, so these
  // only touch numbers.
  void askSoftware() {
    struct Counted {
      std::string text;
      std::size_t machines = 0;
      std::int64_t last = 0;  // scan that has it

      void add(std::int64_t scan) { machines += std::exchange(last, scan) == scan ? 0 : 1; }
    };
    struct Version : Counted {
      std::size_t application = 0;
    };
    std::vector<Counted> applications;
    std::vector<Version> versions;
    std::unordered_map<std::int64_t, std::size_t> versionOf;  // by row
    ask("SELECT _id, name, version FROM _software_rows WHERE name IS NOT NULL ORDER BY name,"
        " version",
        [&](const Statement& row) {
          const std::string_view name = row.text(1);
          const bool sameName = !applications.empty() && applications.back().text == name;
          if (!sameName) applications.push_back({std::string(name)});
          if (!sameName || versions.back().text != row.text(2)) {
            versions.push_back({{std::string(row.text(2))}, applications.size() - 1});
          }
          versionOf.emplace(row.integer(0), versions.size() - 1);
        });
    ask(formatString("SELECT s.id, l._row FROM _scans s CROSS JOIN _software_links l ON l._id"
                     " BETWEEN s.id << %d AND (s.id + 1 << %d) - 1 WHERE s.latest",
                     kPlaceBits, kPlaceBits),
        [&](const Statement& row) {
          const auto version = versionOf.find(row.integer(1));
          if (version == versionOf.end()) return;
          versions[version->second].add(row.integer(0));
          applications[versions[version->second].application].add(row.integer(0));
        });

    const auto more = [](const Counted* a, const Counted* b) { return a->machines > b->machines; };
    std::vector<std::vector<const Counted*>> versionsOf(applications.size());
    for (const Version& version : versions) {
      if (version.machines > 0) versionsOf[version.application].push_back(&version);
    }
    std::vector<const Counted*> order;
    for (const Counted& application : applications) {
      if (application.machines > 0) order.push_back(&application);
    }
    std::ranges::stable_sort(order, more);
    constexpr std::size_t kApplications = 100;
    constexpr std::size_t kVersions = 5;
    constexpr double kNearlyAll = 0.99;  // some scans are incomplete
    for (const Counted* application : order) {
      const bool everywhere = static_cast<double>(application->machines) >=
                              kNearlyAll * static_cast<double>(found_.machines);
      auto& list = everywhere ? found_.everywhere : found_.software;
      if (list.size() == kApplications) {
        ++(everywhere ? found_.otherEverywhere : found_.otherSoftware);
        continue;
      }
      auto& all = versionsOf[static_cast<std::size_t>(application - applications.data())];
      std::ranges::stable_sort(all, more);
      auto& entry = list.emplace_back();
      entry.name = application->text;
      entry.machines = application->machines;
      for (std::size_t i = 0; i < std::min(kVersions, all.size()); ++i) {
        entry.versions.push_back({all[i]->text, all[i]->machines});
      }
      entry.otherVersions = all.size() - entry.versions.size();
    }
  }

  Database& database_;
  std::int64_t now_;
  Statement name_;
  Overview found_;
  std::optional<Error> problem_;
};

}  // namespace

Result<Overview> overviewOf(Database& database, std::int64_t now) {
  return Asking(database, now).all();
}

}  // namespace fleet
