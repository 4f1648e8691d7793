#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "base/isoTime.h"
#include "command.h"
#include "files.h"
#include "huxread/container.h"
#include "inspect/compare.h"
#include "machine/describe.h"
#include "output.h"
#include "platform/host.h"
#include "show/changes.h"
#include "show/columns.h"
#include "show/figures.h"
#include "show/json.h"

using huxread::Container;
using huxread::Result;
using machine::Description;

namespace {

constexpr std::size_t kDateColumns = 16;  // "2026-11-21 19:54"

// A file, by what is kept of it: a fleet's files as tables would not fit into memory.
struct Scan {
  std::string path;
  std::optional<std::int64_t> time;            // seconds since 1970
  std::shared_ptr<const Container> container;  // of standard input, which cannot be read again

  auto order() const { return std::tuple(!time, time.value_or(0), std::string_view(path)); }
};

using Scans = std::vector<Scan>;

std::string textOf(const Description& machine, std::string_view column) {
  return std::string(machine::textOf(machine.machine(machine::columnAt("machine", column))));
}

// What machines are told apart by: the serial number, else the UUID, else each file is its own.
std::string keyOf(const Description& machine, const std::string& path) {
  const std::string serial = textOf(machine, "serial");
  const std::string uuid = textOf(machine, "uuid");
  if (!serial.empty()) return "1" + serial;
  return uuid.empty() ? "3" + path : "2" + uuid;
}

Result<Description> read(const Scan& scan) {
  if (!scan.container) return describeFile(scan.path);
  return machine::describe(*scan.container, *platform::makeHost());
}

// The files by machine, each machine's in the order of their times; by name when they state none.
// Files that cannot be read are named, and counted by `unreadable`; `code` is raised when memory
// does not last.
std::map<std::string, Scans> scansByMachine(const std::vector<std::string>& files,
                                            std::atomic<std::size_t>& unreadable, int& code) {
  std::map<std::string, Scans> machines;
  std::mutex mutex;
  const int worst = forEachFile(files, [&](const std::string& path) {
    Result<Container> file = openFile(path);
    const auto host = platform::makeHost();
    const auto machine = file ? machine::identify(*file, *host) : file.error();
    if (!machine) {
      ++unreadable;
      return Outcome{"", message(path, machine.error().message)};
    }
    Scan scan = {path, unixSeconds(textOf(*machine, "scanned_at")), nullptr};
    if (path == "-") scan.container = std::make_shared<const Container>(std::move(*file));
    const std::lock_guard lock(mutex);
    machines[keyOf(*machine, path)].push_back(std::move(scan));
    return Outcome{};
  });
  code = std::max(code, worst);
  for (auto& [key, scans] : machines) std::ranges::sort(scans, {}, &Scan::order);
  return machines;
}

// One machine's timeline as it is printed: a line with the date for each scan, what changed beside
// and below it; or one JSON object on one line.
class Timeline {
 public:
  explicit Timeline(bool json) : json_(json) {}

  // Of the first scan there are no changes, null.
  void add(const Scan& scan, const Description& machine,
           const std::vector<inspect::Change>* changes) {
    ++scans_;
    if (json_) {
      objects_ += (scans_ == 1 ? "{" : ",{") + show::fileMembers(machine, scan.path) +
                  R"(,"changes":)" + (changes == nullptr ? "null" : show::changesArray(*changes)) +
                  "}";
    } else {
      addLines(dateOf(machine, scan), changes);
    }
  }

  // `machine` is the last one added.
  std::string text(const Description& machine, const show::Terminal& terminal) {
    if (json_) return R"({"format":"hux-history/1","scans":[)" + objects_ + "]}\n";
    std::string name = textOf(machine, "name");
    if (name.empty()) name = textOf(machine, "local_hostname");
    const std::string serial = textOf(machine, "serial");
    const std::string who = show::joined({textOf(machine, "model_id"),
                                          serial.empty() ? textOf(machine, "uuid") : serial,
                                          show::count(scans_, "scan")});
    lines_.insert(lines_.begin(),
                  {
                      {{show::onOneLine(name.empty() ? "a Mac" : name), show::Style::Bold},
                       {"  " + show::onOneLine(who), show::Style::Dim}}
    });
    return show::render(lines_, widthOf(terminal), terminal.colour);
  }

 private:
  void addLines(std::string label, const std::vector<inspect::Change>* changes) {
    if (changes == nullptr || changes->empty()) {
      const char* word = changes == nullptr ? "    first scan" : "    no change";
      lines_.push_back({
          {{std::move(label)}, {word, show::Style::Dim}}
      });
      return;
    }
    for (show::StyledLine& line : show::changeLines(*changes)) {
      line.left.insert(line.left.begin(), {label + "  "});
      lines_.push_back(std::move(line));
      label = std::string(kDateColumns, ' ');
    }
  }

  // As the machine's own clock showed it; else the file's name.
  static std::string dateOf(const Description& machine, const Scan& scan) {
    const std::string time = textOf(machine, "scanned_at");
    return show::padded(scan.time ? time.substr(0, 10) + " " + time.substr(11, 5)
                                  : show::onOneLine(scan.path.substr(scan.path.rfind('/') + 1)),
                        kDateColumns);
  }

  bool json_;
  std::size_t scans_ = 0;
  std::string objects_;
  std::vector<show::StyledLine> lines_;
};

// Whether the later file is the earlier one once more.
bool isCopy(const Scan& before, const Scan& after, const Description& earlier,
            const Description& later) {
  return before.time && before.time == after.time &&
         inspect::compare(earlier, later, {true, {}}).changes.empty();
}

// Takes over the tables that the later file cannot hold, so that one of the other kind between two
// does not hide what changed in them.
void keepUnrecorded(Description& before, Description& after) {
  for (std::size_t i = 0; i < machine::kTableCount; ++i) {
    if (!after[i].recorded) after[i] = std::move(before[i]);
  }
}

// Walks the scans of one machine, two at a time.
Outcome follow(const Scans& scans, bool json, const show::Terminal& terminal,
               std::atomic<std::size_t>& unreadable) {
  Outcome outcome;
  outcome.safe = !json;
  Timeline timeline(json);
  std::optional<Description> before;
  const Scan* last = nullptr;
  for (const Scan& scan : scans) {
    Result<Description> machine = read(scan);
    if (!machine) {
      outcome.errors += message(scan.path, machine.error().message);
      ++unreadable;
      continue;
    }
    if (before && isCopy(*last, scan, *before, *machine)) continue;
    if (before) {
      const inspect::Comparison comparison = inspect::compare(*before, *machine, {});
      timeline.add(scan, *machine, &comparison.changes);
    } else {
      timeline.add(scan, *machine, nullptr);
    }
    if (before) keepUnrecorded(*before, *machine);
    before.emplace(std::move(*machine));
    last = &scan;
  }
  if (before) outcome.output = timeline.text(*before, terminal);
  return outcome;
}

}  // namespace

int runHistory(const Arguments& arguments) {
  int code = kDone;
  std::atomic<std::size_t> unreadable = 0;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  const std::map<std::string, Scans> machines = scansByMachine(files, unreadable, code);
  std::vector<std::string> keys;
  keys.reserve(machines.size());
  for (const auto& [key, scans] : machines) keys.push_back(key);
  const show::Terminal terminal = outputTerminal();
  const int worst = forEachFile(keys, [&](const std::string& key) {
    Outcome outcome = follow(machines.at(key), arguments.json, terminal, unreadable);
    if (!arguments.json && key != keys.front()) outcome.output.insert(0, "\n");
    return outcome;
  });
  if (unreadable == 0) return std::max(code, worst);
  printMessage("history", show::count(unreadable, "file") + " could not be read");
  return kTrouble;
}
