#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "golden/machine.h"
#include "inspect/compare.h"
#include "machine/valueText.h"

// A snapshot and a debug file of one machine say the same wherever both know something, but for
// what the snapshot says differently by its rules.

namespace {

using inspect::Change;
using machine::Description;

// A column, or with "" whole rows of the snapshot, that the debug file does not bear out; and why.
struct Difference {
  std::string_view machine;
  std::string_view table;
  std::string_view column;
  std::string_view why;
};
constexpr const char* kEvery = "";
constexpr Difference kAllowed[] = {
    {kEvery,  "machine",  "source",                "is the difference"                            },
    {kEvery,  "machine",  "scanned_at",            "a debug file notes when the scan began"       },
 // Sizes that come as a text only, and by chance are whole blocks: "625 GB" is 625 * 2^30 there.
    {"mac",   "volumes",  "size_bytes",            "units of a text count as binary"              },
    {"tower", "disks",    "size_bytes",            "units of a text count as binary"              },
    {"tower", "volumes",  "size_bytes",            "units of a text count as binary"              },
    {"tower", "volumes",  "free_bytes",            "units of a text count as binary"              },
    {"tower", "machine",  "workgroup",             "the agent compares addresses as found"        },
    {"tower", "adapters", "subnet_masks",          "a mask that is no text"                       },
    {"tower", "firewall", "setting",               "any word but \"No\" counts as on"             },
    {"tower", "power",    "sleep_on_power_button", "a number where others have words counts as no"},
};

// What the debug file does not bear out, by table and column, or "" for whole rows.
std::map<std::pair<std::string_view, std::string_view>, std::string> differences(
    const Description& snapshot, const Description& debug) {
  std::map<std::pair<std::string_view, std::string_view>, std::string> found;
  for (const Change& change : inspect::compare(snapshot, debug, {.all = true}).changes) {
    if (change.before == nullptr) continue;  // a debug file knows more
    const std::string named = machine::identityOf(*change.table, *change.before);
    if (named.empty() && !change.table->single) continue;  // a slot or a drive without a name
    if (change.column == nullptr) {
      found[{change.table->name, ""}] += "\n  " + named + " is in the snapshot only";
      continue;
    }
    const auto place = static_cast<std::size_t>(change.column - change.table->columns.data());
    found[{change.table->name, change.column->name}] +=
        "\n  " + named + ": snapshot " + machine::valueText((*change.before)[place]) +
        ", debug file " + machine::valueText((*change.after)[place]);
  }
  return found;
}

class Agreement : public testing::TestWithParam<Machine> {};

}  // namespace

TEST_P(Agreement, OfSnapshotAndDebugFile) {
  Machine machine = GetParam();
  const Description snapshot = scannedTables(machine);
  machine.debug = true;
  auto found = differences(snapshot, scannedTables(machine));
  for (const Difference& allowed : kAllowed) {
    if (allowed.machine != kEvery && allowed.machine != machine.name) continue;
    EXPECT_EQ(found.erase({allowed.table, allowed.column}), 1U)
        << "no longer so, take it off the list: " << allowed.table << "." << allowed.column;
  }
  for (const auto& [where, rows] : found) {
    ADD_FAILURE() << where.first << "." << where.second << rows;
  }
  EXPECT_FALSE(snapshot[machine::tableAt("software")].rows.empty());
}

INSTANTIATE_TEST_SUITE_P(Machines, Agreement, testing::ValuesIn(distinctMachines()), testName);
