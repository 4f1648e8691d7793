#include "golden/machine.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <regex>
#include <sstream>
#include <utility>

#include "huxread/container.h"
#include "machine/describe.h"
#include "run/scanRun.h"
#include "support/fakeHost.h"
#include "support/fileText.h"

namespace fs = std::filesystem;

namespace {

// The files of a folder by name; none when it is missing.
std::map<std::string, fs::path> filesOf(const fs::path& folder) {
  std::map<std::string, fs::path> files;
  if (!fs::is_directory(folder)) return files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    files[entry.path().stem().string()] = entry.path();
  }
  return files;
}

// A data type that was not recorded prints nothing, which counts for as much as an empty list.
void playProfiler(const fs::path& folder, FakeHost& host) {
  const std::string command = "system_profiler -detailLevel full -xml";
  for (const auto& [name, path] : filesOf(folder)) {
    if (!name.starts_with("SP")) continue;
    const std::string profile = fileText(path);
    host.outputs[command + " " + name] = profile;
    std::string& all = host.outputs[command];
    if (all.empty()) all = "<array>\n</array>\n";
    const std::size_t start = profile.find("<array>\n") + 8;
    all.insert(all.rfind("</array>\n"), profile, start, profile.rfind("</array>\n") - start);
  }
}

// Of the registry the command that is run prints the identifier alone.
void playTexts(const fs::path& folder, FakeHost& host) {
  const auto files = filesOf(folder);
  if (files.contains("users")) host.outputs["ls -1 /Users/"] = fileText(files.at("users"));
  if (files.contains("env")) host.outputs["env"] = fileText(files.at("env"));
  for (const auto& [name, path] : filesOf(folder / "dscl")) {
    host.outputs["dscl . -read \"/users/" + name + "\""] = fileText(path);
  }
  for (const auto& [name, path] : filesOf(folder / "diskutil")) {
    host.outputs["diskutil info /dev/" + name] = fileText(path);
  }
  const std::string registry = fileText(folder / "ioreg.txt");
  if (std::smatch id;
      std::regex_search(registry, id, std::regex(R"re("IOPlatformUUID" = "([^"]*))re"))) {
    host.outputs[R"(ioreg -rd1 -c IOPlatformExpertDevice | awk '/IOPlatformUUID/ )"
                 R"({ split($0, line, "\""); printf("%s", line[4]); }')"] = id[1];
  }
}

// "PID | PPID | NAME | what ps prints", one line for each entry of the process table.
void playProcesses(const fs::path& folder, FakeHost& host) {
  static const std::regex kLine(R"((\d+) \| (\d+) \| (.*?) \| ?(.*))");
  std::istringstream lines(fileText(folder / "processes.txt"));
  std::smatch cells;
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(std::regex_match(line, cells, kLine)) << line;
    host.processes.push_back({std::stoi(cells[1]), std::stoi(cells[2]), cells[3]});
    if (cells[4].length() == 0) continue;
    host.outputs["ps -p" + cells[1].str() + " -o user=\"\" -o command=\"\""] =
        cells[4].str() + "\n";
  }
}

void playBundles(const fs::path& folder, FakeHost& host) {
  const std::string plugIns = "/Library/Internet Plug-Ins";
  const auto list = host.parsePropertyList(fileText(folder / "bundles.xml"));
  if (!list) return;
  for (const platform::PropertyList& entry : *list->array()) {
    const std::string& name = *entry.find("name")->text();
    const platform::PropertyList* info = entry.find("info");
    host.bundleFolders[plugIns].push_back(
        {plugIns + "/" + name, name, info == nullptr ? platform::PropertyList("") : *info});
  }
}

void play(const fs::path& folder, FakeHost& host) {
  playProfiler(folder, host);
  playTexts(folder, host);
  playProcesses(folder, host);
  playBundles(folder, host);
}

// Hands over the one file that a folder holds.
void readFile(const fs::path& folder, const TakeFile& take) {
  const auto files = filesOf(folder);
  ASSERT_EQ(files.size(), 1U);
  const std::string bytes = fileText(files.begin()->second);
  const auto file = huxread::Container::parse(bytes);
  ASSERT_TRUE(file);
  take(*file, bytes);
}

}  // namespace

std::span<const Machine> machines() {
  static constexpr Machine kMachines[] = {
      {"mac",           "mac",     "demo/mac", "Mara’s MacBook Pro", "",              "",      false},
      {"tower",         "tower",   nullptr,    "Werkstatt 2/3",        "198.51.100.84", "stock", false},
      {"virtual",       "virtual", nullptr,    "vm",                   "",              "",      false},
      {"silicon",       "silicon", nullptr,    "Noor’s MacBook Pro", "",              "",      false},
      {"virtual-debug", "virtual", nullptr,    "vm",                   "192.0.2.7",     "stock", true },
  };
  return kMachines;
}

std::vector<Machine> distinctMachines() {
  std::vector<Machine> distinct(machines().begin(), machines().end());
  std::erase_if(distinct, [](const Machine& machine) { return machine.debug; });
  return distinct;
}

void PrintTo(const Machine& machine, std::ostream* out) {
  *out << machine.name;
}

std::string testName(const testing::TestParamInfo<Machine>& info) {
  std::string name = info.param.name;
  std::erase(name, '-');  // no test's name has one
  return name;
}

void scan(const Machine& machine, const TakeFile& take) {
  FakeHost host;
  const fs::path checkout(PROJECT_FOLDER);
  if (machine.recording != nullptr) play(checkout / machine.recording, host);
  play(checkout / "tests/machines" / machine.folder, host);
  host.name = machine.computerName;
  host.times = {574416000.2, 574416065.1};  // 2019-03-16 08:00:00 UTC

  const fs::path back = fs::current_path();
  const fs::path folder = fs::path(testing::TempDir()) / ("golden." + std::to_string(getpid()));
  fs::create_directory(folder);
  fs::current_path(folder);
  testing::internal::CaptureStdout();
  scanRun(host, RunOptions{1, 0, 0}, false, machine.debug, machine.ipAddress, machine.login);
  testing::internal::GetCapturedStdout();
  fs::current_path(back);
  readFile(folder, take);
  fs::remove_all(folder);
}

std::string scannedText(const Machine& machine) {
  std::string texts;
  scan(machine, [&texts](const huxread::Container& file, const std::string& /*bytes*/) {
    for (const huxread::Section& section : file.sections()) {
      if (section.type != huxread::SectionType::CustomData) texts += *file.text(section.number);
    }
  });
  return texts;
}

machine::Description scannedTables(const Machine& machine) {
  machine::Description tables(machine::Source::Snapshot);
  scan(machine, [&tables](const huxread::Container& file, const std::string& /*bytes*/) {
    FakeHost host;  // parses property lists
    auto described = machine::describe(file, host);
    ASSERT_TRUE(described) << described.error().message;
    tables = std::move(*described);
  });
  return tables;
}

void expectGolden(const std::string& name, const std::string& file, const std::string& text) {
  const char* named = std::getenv("ORBEX_REFRESH_GOLDEN");
  const std::string names = " " + std::string(named == nullptr ? "" : named) + " ";
  if (names.find(" " + name + " ") != std::string::npos) {
    std::ofstream(file, std::ios::binary) << text;
    std::cout << "wrote " << file << "\n";
  }
  const std::string golden = fileText(file);
  EXPECT_TRUE(golden == text) << difference(golden, text)
                              << "\nIf this is wanted: scripts/refresh-golden " << name;
}

std::string goldenFile(const Machine& machine) {
  return std::string(PROJECT_FOLDER "/tests/golden/") + machine.name + ".txt";
}

std::string goldenTablesFile(const Machine& machine) {
  return std::string(PROJECT_FOLDER "/tests/golden/tables/") + machine.name +
         (machine.debug ? "-debug.json" : ".json");
}

std::string goldenPage(const std::string& name, const char* extension) {
  return PROJECT_FOLDER "/tests/golden/pages/" + name + extension;
}

std::string goldenText(const Machine& machine) {
  return fileText(goldenFile(machine));
}

std::string difference(const std::string& golden, const std::string& scanned) {
  const auto at = std::ranges::mismatch(golden, scanned).in1 - golden.begin();
  const std::size_t start = golden.substr(0, static_cast<std::size_t>(at)).rfind('\n') + 1;
  const auto line = [start](const std::string& text) {
    return start > text.size() ? "" : text.substr(start, text.find('\n', start) - start);
  };
  return "golden:  " + line(golden) + "\nscanned: " + line(scanned);
}
