#include "inspect/compare.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "inspect/search.h"
#include "machine/valueText.h"

namespace inspect {

namespace {

using machine::Description;
using machine::Identity;
using machine::isKnown;
using machine::kTableCount;
using machine::kTables;
using machine::Row;
using machine::Table;
using machine::Value;

// What a snapshot tells by rules of its own (docs/limits.md), so that a debug file of the same
// moment tells something else.
enum class Rule {
  Values,  // of a column
  Rows,    // it lists some rows only, and leaves some without a name
  Copies,  // rows that are called the same are one
};
struct OwnRule {
  std::string_view table;
  Rule rule;
  std::string_view column;
};
constexpr OwnRule kOwnRules[] = {
    {"memory",   Rule::Rows,   ""                     },
    {"disks",    Rule::Rows,   ""                     },
    {"disks",    Rule::Values, "size_bytes"           }, // units of a text count as binary
    {"volumes",  Rule::Rows,   ""                     },
    {"volumes",  Rule::Values, "size_bytes"           },
    {"usb",      Rule::Rows,   ""                     },
    {"software", Rule::Copies, ""                     },
    {"firewall", Rule::Rows,   ""                     },
    {"firewall", Rule::Values, "setting"              }, // any word but "No" counts as on
    {"power",    Rule::Values, "sleep_on_power_button"}, // a number counts as no
};

// --- Sets of a table's columns, by their places

using Columns = std::uint64_t;

bool holds(Columns columns, std::size_t place) {
  return (columns >> place & 1U) != 0;
}

template <typename Predicate>
Columns columnsWhere(const Table& table, Predicate wanted) {
  Columns columns = 0;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    if (wanted(i)) columns |= Columns{1} << i;
  }
  return columns;
}

Columns identifying(const Table& table, Identity which) {
  return columnsWhere(table, [&](std::size_t i) { return table.columns[i].identity == which; });
}

Columns knownOf(const Row& row) {
  Columns columns = 0;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (isKnown(row[i])) columns |= Columns{1} << i;
  }
  return columns;
}

// The values of these columns as a text that no others make.
std::string keyOf(const Row& row, Columns columns) {
  std::string key;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (!holds(columns, i)) continue;
    key += isKnown(row[i]) ? machine::valueText(row[i]) + '\x1F' : "\x1E";  // no text holds these
  }
  return key;
}

// --- Which row of the one file is which of the other

struct Entry {
  const Row* row;
  std::size_t number;            // in its table, from 1
  bool sure = false;             // knows some of what settles it
  bool first = false;            // knows some of what identifies it in the first place
  Columns second = 0;            // what it knows of the columns that do so in the second place
  const Row* partner = nullptr;  // of the other file
};

class Matching {
 public:
  // What is compared of the rows is `content`.
  Matching(const Table& table, Columns content, std::vector<Entry>& before,
           std::vector<Entry>& after)
      : sure_(identifying(table, Identity::Sure)),
        first_(identifying(table, Identity::First)),
        second_(identifying(table, Identity::Second)),
        content_(content),
        before_(before),
        after_(after) {
    for (std::vector<Entry>* entries : {&before_, &after_}) {
      for (Entry& entry : *entries) {
        const Columns known = knownOf(*entry.row);
        entry.sure = (known & sure_) != 0;
        entry.first = (known & first_) != 0;
        entry.second = known & second_;
      }
    }
  }

  // Rows are the same by what settles it; by what identifies them in the first place; else, unless
  // both state that and so differ, by what does in the second place, as far as both know it. Those
  // that state neither are all alike. A step costs what there are rows; how many steps, depends on
  // the columns.
  void run() {
    for (const Columns columns : {sure_ | first_, sure_}) {  // copies of a volume have one UUID
      join(
          columns, [](const Entry& entry) { return entry.sure; },
          [](const Entry& entry) { return entry.sure; });
    }
    join(
        first_, [](const Entry& entry) { return entry.first; },
        [](const Entry& entry) { return entry.first; });
    for (const auto& [common, ours, theirs] : steps()) {
      const auto is = [](Kind kind) {
        return [kind](const Entry& entry) { return kindOf(entry) == kind; };
      };
      join(common, is(ours), is(theirs));
    }
  }

 private:
  using Kind = std::pair<bool, Columns>;

  static Kind kindOf(const Entry& entry) { return {entry.first, entry.second}; }

  static std::set<Kind> kindsOf(const std::vector<Entry>& entries) {
    std::set<Kind> kinds;
    for (const Entry& entry : entries) {
      if (entry.partner == nullptr) kinds.insert(kindOf(entry));
    }
    return kinds;
  }

  // The kinds of rows that can be the same, and by what; first those that have most in common.
  std::vector<std::tuple<Columns, Kind, Kind>> steps() const {
    const Kind nameless = {false, 0};
    std::vector<std::tuple<Columns, Kind, Kind>> steps;
    for (const Kind& ours : kindsOf(before_)) {
      for (const Kind& theirs : kindsOf(after_)) {
        const Columns common = ours.second & theirs.second;
        const bool differ = ours.first && theirs.first;
        if ((common != 0 && !differ) || (ours == nameless && theirs == nameless)) {
          steps.emplace_back(common, ours, theirs);
        }
      }
    }
    std::ranges::stable_sort(steps, std::greater<>(), [](const auto& step) {
      return std::popcount(std::get<Columns>(step));
    });
    return steps;
  }

  // Pairs the rows that have the same in `columns`: of several equals those with the same content,
  // the others in their order.
  template <typename Ours, typename Theirs>
  void join(Columns columns, const Ours& isOurs, const Theirs& isTheirs) {
    for (const Columns content : {content_, Columns{0}}) {
      const auto key = [&](const Entry& entry) {
        return keyOf(*entry.row, columns) + '\x1D' + keyOf(*entry.row, content);
      };
      std::unordered_map<std::string, std::vector<Entry*>> waiting;  // the next one last
      for (std::size_t i = after_.size(); i-- > 0;) {
        Entry& entry = after_[i];
        if (entry.partner == nullptr && isTheirs(entry)) waiting[key(entry)].push_back(&entry);
      }
      if (waiting.empty()) return;
      for (Entry& entry : before_) {
        if (entry.partner != nullptr || !isOurs(entry)) continue;
        const auto found = waiting.find(key(entry));
        if (found == waiting.end() || found->second.empty()) continue;
        entry.partner = found->second.back()->row;
        found->second.back()->partner = entry.row;
        found->second.pop_back();
      }
    }
  }

  Columns sure_;
  Columns first_;
  Columns second_;
  Columns content_;
  std::vector<Entry>& before_;
  std::vector<Entry>& after_;
};

// --- One table of two files

class TableComparison {
 public:
  TableComparison(std::size_t place, const Description& before, const Description& after,
                  const CompareOptions& options)
      : table_(kTables[place]), options_(options), before_(before), after_(after), place_(place) {}

  void addTo(std::vector<Change>& changes) const {
    if (!before_[place_].recorded || !after_[place_].recorded || isIgnored(table_.name)) return;
    std::vector<Entry> ours = entriesOf(before_);
    std::vector<Entry> theirs = entriesOf(after_);
    const Columns compared = columnsWhere(table_, [this](std::size_t i) { return counts(i); });
    if (table_.single && !ours.empty() && !theirs.empty()) {
      ours.front().partner = theirs.front().row;
      theirs.front().partner = ours.front().row;
    } else {
      Matching(table_, compared & knownIn(ours) & knownIn(theirs), ours, theirs).run();
    }
    dropUncertain(ours, theirs);
    for (const Entry& entry : ours) {
      if (entry.partner != nullptr) {
        addCells(entry, compared, changes);
      } else {
        changes.push_back(
            {Change::Kind::Removed, &table_, title(entry), nullptr, entry.row, nullptr});
      }
    }
    for (const Entry& entry : theirs) {
      if (entry.partner != nullptr) continue;
      changes.push_back({Change::Kind::Added, &table_, title(entry), nullptr, nullptr, entry.row});
    }
  }

 private:
  std::string title(const Entry& entry) const {
    return table_.single ? "" : rowTitle(table_, *entry.row, entry.number);
  }

  // Takes out the rows without a partner that may well be on the machine at both times.
  void dropUncertain(std::vector<Entry>& ours, std::vector<Entry>& theirs) const {
    const bool oursIsSnapshot = before_.source() == machine::Source::Snapshot;
    std::vector<Entry>& snapshot = oursIsSnapshot ? ours : theirs;
    std::vector<Entry>& debug = oursIsSnapshot ? theirs : ours;
    if (follows(Rule::Rows)) {
      std::erase_if(debug, [](const Entry& entry) { return entry.partner == nullptr; });
      std::erase_if(snapshot, [](const Entry& entry) {
        return entry.partner == nullptr && !entry.first && entry.second == 0;
      });
    }
    if (follows(Rule::Copies)) {
      const Columns name = identifying(table_, Identity::Second);
      std::unordered_set<std::string> names;
      for (const Entry& entry : snapshot) names.insert(keyOf(*entry.row, name));
      std::erase_if(debug, [&](const Entry& entry) {
        return entry.partner == nullptr && names.contains(keyOf(*entry.row, name));
      });
    }
  }

  void addCells(const Entry& entry, Columns compared, std::vector<Change>& changes) const {
    for (std::size_t i = 0; i < entry.row->size(); ++i) {
      const Value& before = (*entry.row)[i];
      const Value& after = (*entry.partner)[i];
      const bool known = isKnown(before) && isKnown(after);
      if (!holds(compared, i) || !known || before == after) continue;
      changes.push_back({Change::Kind::Changed, &table_, title(entry), &table_.columns[i],
                         entry.row, entry.partner});
    }
  }

  std::vector<Entry> entriesOf(const Description& machine) const {
    std::vector<Entry> entries;
    const std::vector<Row>& rows = machine[place_].rows;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (options_.all || !comesAndGoes(rows[i])) entries.push_back({&rows[i], i + 1});
    }
    return entries;
  }

  bool comesAndGoes(const Row& row) const {
    return std::ranges::any_of(machine::kPassing, [&](const machine::Passing& passing) {
      if (passing.table != table_.name) return false;
      if (passing.column.empty()) return true;
      const std::size_t column = machine::columnAt(passing.table, passing.column);
      return machine::valueText(row[column]) == passing.value;
    });
  }

  static Columns knownIn(const std::vector<Entry>& entries) {
    Columns known = 0;
    for (const Entry& entry : entries) known |= knownOf(*entry.row);
    return known;
  }

  bool counts(std::size_t place) const {
    const machine::Column& column = table_.columns[place];
    if (!options_.ignored.empty() &&
        isIgnored(std::string(table_.name) + "." + std::string(column.name))) {
      return false;
    }
    if (options_.all) return true;
    return column.changes == machine::Changes::No && !follows(Rule::Values, column.name);
  }

  bool isIgnored(std::string_view name) const {
    return std::ranges::find(options_.ignored, name) != options_.ignored.end();
  }

  // Whether only one of the two files follows this rule here.
  bool follows(Rule rule, std::string_view column = "") const {
    if (options_.all || before_.source() == after_.source()) return false;
    return std::ranges::any_of(kOwnRules, [&](const OwnRule& own) {
      return own.table == table_.name && own.rule == rule && own.column == column;
    });
  }

  const Table& table_;
  const CompareOptions& options_;
  const Description& before_;
  const Description& after_;
  std::size_t place_;
};

// By the first of these that both know.
bool isSameMachine(const Description& before, const Description& after) {
  for (const char* name : {"serial", "uuid"}) {
    const std::size_t column = machine::columnAt("machine", name);
    const Value& ours = before.machine(column);
    const Value& theirs = after.machine(column);
    if (isKnown(ours) && isKnown(theirs)) return ours == theirs;
  }
  return true;
}

}  // namespace

bool isInSchema(std::string_view name) {
  const std::size_t dot = name.find('.');
  const Table* table = machine::findTable(name.substr(0, dot));
  if (table == nullptr || dot == std::string_view::npos) return table != nullptr;
  return machine::findColumn(*table, name.substr(dot + 1)) != nullptr;
}

Comparison compare(const Description& before, const Description& after,
                   const CompareOptions& options) {
  Comparison comparison;
  comparison.sameMachine = isSameMachine(before, after);
  for (std::size_t place = 0; place < kTableCount; ++place) {
    TableComparison(place, before, after, options).addTo(comparison.changes);
  }
  return comparison;
}

}  // namespace inspect
