#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/formatString.h"
#include "golden/machine.h"

// A snapshot and a debug file of one machine say the same wherever both know something, but for
// what the snapshot says differently by its rules.

namespace {

using machine::Description;
using machine::Row;
using machine::Table;

// A column, or with "" whole rows of the snapshot, that the debug file does not bear out; and why.
struct Difference {
  std::string_view machine;
  std::string_view table;
  std::string_view column;
  std::string_view why;
};
constexpr const char* kEvery = "";
constexpr Difference kAllowed[] = {
    {kEvery,    "machine",  "source",                "is the difference"                            },
    {kEvery,    "machine",  "scanned_at",            "a debug file notes when the scan began"       },
    {"silicon", "software", "modified_on",
     "several copies of an application are one entry, the last"                                     },
 // Sizes that come as a text only, and by chance are whole blocks: "625 GB" is 625 * 2^30 there.
    {"mac",     "volumes",  "size_bytes",            "units of a text count as binary"              },
    {"tower",   "disks",    "size_bytes",            "units of a text count as binary"              },
    {"tower",   "volumes",  "size_bytes",            "units of a text count as binary"              },
    {"tower",   "volumes",  "free_bytes",            "units of a text count as binary"              },
    {"tower",   "adapters", "subnet_masks",          "a mask that is no text"                       },
    {"tower",   "firewall", "setting",               "any word but \"No\" counts as on"             },
    {"tower",   "power",    "sleep_on_power_button", "a number where others have words counts as no"},
};

std::string shown(const machine::Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    return formatString("%lld", static_cast<long long>(*number));
  }
  if (const auto* number = std::get_if<double>(&value)) return formatString("%g", *number);
  if (const auto* on = std::get_if<bool>(&value)) return *on ? "true" : "false";
  return std::string(machine::textOf(value));
}

// Whether two rows have the same in the columns of an identity: in all of them, or, since a
// snapshot may lack some of what names a row, in those of the second one that both know.
bool alike(const Table& table, const Row& a, const Row& b, machine::Identity which) {
  bool known = false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (table.columns[i].identity != which) continue;
    const bool both = machine::isKnown(a[i]) && machine::isKnown(b[i]);
    if ((both || which == machine::Identity::First) && a[i] != b[i]) return false;
    known = known || both;
  }
  return known;
}

// The row of the debug file that is this one, and is not yet another's: by what comes first in its
// identity, else (applications, of which a snapshot may lack the path) by what comes second. Null
// when there is none. One of several equals is the next one.
const Row* partner(const Table& table, const Row& row, std::vector<const Row*>& left) {
  for (const auto which : {machine::Identity::First, machine::Identity::Second}) {
    const auto found = std::ranges::find_if(
        left, [&](const Row* other) { return table.single || alike(table, row, *other, which); });
    if (found == left.end()) continue;
    const Row* partner = *found;
    left.erase(found);
    return partner;
  }
  return nullptr;
}

struct Comparison {
  std::map<std::pair<std::string_view, std::string_view>, std::string> differences;
  std::map<std::string_view, int> compared;  // values, by table
};

Comparison compare(const Description& snapshot, const Description& debug) {
  Comparison result;
  for (std::size_t i = 0; i < machine::kTableCount; ++i) {
    const Table& table = machine::kTables[i];
    if (!snapshot[i].recorded || !debug[i].recorded) continue;
    std::vector<const Row*> left;
    for (const Row& row : debug[i].rows) left.push_back(&row);
    for (const Row& row : snapshot[i].rows) {
      const std::string named = machine::identityOf(table, row);
      if (named.empty() && !table.single) continue;  // a slot or a drive without a name
      const Row* other = partner(table, row, left);
      if (other == nullptr) {
        result.differences[{table.name, ""}] += "\n  " + named + " is in the snapshot only";
        continue;
      }
      for (std::size_t at = 0; at < row.size(); ++at) {
        const machine::Value& value = row[at];
        if (!machine::isKnown(value) || !machine::isKnown((*other)[at])) continue;
        ++result.compared[table.name];
        if (value == (*other)[at]) continue;
        result.differences[{table.name, table.columns[at].name}] +=
            "\n  " + named + ": snapshot " + shown(value) + ", debug file " + shown((*other)[at]);
      }
    }
  }
  return result;
}

class Agreement : public testing::TestWithParam<Machine> {};

}  // namespace

TEST_P(Agreement, OfSnapshotAndDebugFile) {
  Machine machine = GetParam();
  const Description snapshot = scannedTables(machine);
  machine.debug = true;
  Comparison found = compare(snapshot, scannedTables(machine));
  for (const Difference& allowed : kAllowed) {
    if (allowed.machine != kEvery && allowed.machine != machine.name) continue;
    EXPECT_EQ(found.differences.erase({allowed.table, allowed.column}), 1U)
        << "no longer so, take it off the list: " << allowed.table << "." << allowed.column;
  }
  for (const auto& [where, rows] : found.differences) {
    ADD_FAILURE() << where.first << "." << where.second << rows;
  }
  for (const char* table : {"machine", "software"}) EXPECT_GT(found.compared[table], 3) << table;
}

INSTANTIATE_TEST_SUITE_P(Machines, Agreement, testing::ValuesIn(distinctMachines()), testName);
