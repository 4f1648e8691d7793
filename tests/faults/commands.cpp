#include <cstdio>
#include <functional>
#include <random>

#include "faults/tools.h"
#include "support/snapshotFile.h"

// Every command that the agent runs, with everything that can go wrong with it: the scan says all
// that the others gave.

using namespace std::string_literals;

namespace {

// What a command prints instead of what it should.
using Output = std::function<std::string(const std::string&)>;

struct Fault {
  std::string name;
  Output output;
  std::string end;  // what it does then, as a shell line
};

Output part(std::size_t numerator, std::size_t denominator) {
  return [=](const std::string& output) {
    return output.substr(0, output.size() * numerator / denominator);
  };
}

Output only(const std::string& text) {
  return [text](const std::string&) { return text; };
}

Output after(const std::string& text) {
  return [text](const std::string& output) { return text + output; };
}

// In the middle and before the end.
Output around(const std::string& bytes) {
  return [bytes](std::string output) {
    output.insert(output.size() * 9 / 10, bytes);
    return output.insert(output.size() / 2, bytes);
  };
}

std::string noise(const std::string&) {
  constexpr std::size_t kSize = 64 << 20;
  std::string bytes;
  bytes.reserve(kSize);
  for (std::mt19937_64 random; bytes.size() < kSize;) {
    const std::uint64_t eight = random();
    bytes.append(reinterpret_cast<const char*>(&eight), sizeof eight);
  }
  return bytes;
}

std::vector<Fault> faults() {
  const std::string line = "2026-11-21 16:22:05.250 tool[523:41]: <b> & \"='$ \\ /dev/disk%s\n";
  const Output all = part(1, 1);
  const Output half = part(1, 2);
  std::vector<Fault> faults = {
      {"not found",              only(""),                                        "exec absent"},
      {"nothing printed",        only(""),                                        ""           },
      {"garbage",                only(line + line + line + line + line),          ""           },
      {"64 MB of noise",         noise,                                           ""           },
      {"NUL bytes",              around("\0\0"s),                                 ""           },
      {"invalid UTF-8",          around("\xC3(\x80\xF5\xED\xA0\x80\xC0\xAF\xFF"), ""           },
      {"failing exit",           all,                                             "exit 1"     },
      {"killed midway",          half,                                            "kill -9 $$" },
      {"lines before the first", after(line + "\n"),                              ""           },
  };
  constexpr std::size_t kCuts = 32;
  for (std::size_t cut = 1; cut <= kCuts; ++cut) {
    faults.push_back({"cut at " + std::to_string(cut) + "/33", part(cut, kCuts + 1), ""});
  }
  return faults;
}

}  // namespace

TEST_F(Tools, CostNothingButTheirOwnWhenTheyFail) {
  const std::vector<Fault> kinds = faults();
  const Entries whole = scan();
  std::size_t commands = 0, cell = 0, runs = 0;
  std::size_t own = 0;  // entries that are missing without one of the commands
  for (const auto& [command, output] : answers()) {
    if (++commands % 3 != 2 && !kThorough) continue;
    answer(command, "");
    const Entries others = missing(whole, missing(whole, scan()));
    own += whole.size() - others.size();
    for (const auto& [name, fault, end] : kinds) {
      constexpr std::size_t kStride = 12;  // meets most faults
      if (++cell % kStride != 0 && !kThorough) continue;
      const std::string printed = fault(output);
      answer(command, printed, end);
      const Entries& expected = printed == output ? whole : others;
      EXPECT_EQ(missing(expected, scan()), Entries()) << name << ": " << command;
      ++runs;
    }
    answer(command, output);
  }
  std::printf("%zu faults x %zu commands: %zu runs\n", kinds.size(), commands, runs);
  // An entry comes from one command, seldom from two: what "others" leaves out is no more.
  EXPECT_LT(own, whole.size() + whole.size() / 5);
}

TEST_F(Tools, LeaveAFileWhenNoneIsThere) {
  std::filesystem::remove_all(pathOf("bin"));
  EXPECT_GT(scan().size(), 20U);
}

TEST_F(Tools, AreKeptWithTheirFaultsForSupport) {
  const std::string report = outcome(kMac + "system_profiler -detailLevel full -xml").output;
  std::size_t number = 0;
  for (const auto& [name, fault, end] : faults()) {
    if (++number % 4 != 1 && !kThorough) continue;
    const std::string printed = fault(report);
    answer("system_profiler.-xml", printed, end);
    EXPECT_EQ(outcome(agent("-silent -debug")).exitCode, 0) << name;
    const std::vector<std::string> files = snapshotFiles();
    ASSERT_EQ(files.size(), 1U) << name;
    EXPECT_TRUE(sectionOf(files[0], 1) == printed) << name;
    EXPECT_TRUE(sectionOf(files[0], 0).ends_with("\nerror-message=Debug scan\n")) << name;
    std::filesystem::remove(files[0]);
  }
}

// Beyond what 32 bits count from 1970, 1904 or 2001.
TEST_F(Tools, MaySpeakOfAnyYear) {
  const std::string command = "system_profiler.SPApplicationsDataType";
  const std::vector<std::string> years = {"1901", "2038", "2040", "2069", "2106", "9999"};
  std::string text = answers().at(command);
  std::size_t place = 0;
  for (const std::string& year : years) {
    place = text.find("<date>", place + 1);
    text.replace(place, 26, "<date>" + year + "-12-31T12:00:00Z");
  }
  answer(command, text);
  const Entries found = scan();
  for (const std::string& year : years) {
    EXPECT_TRUE(std::ranges::any_of(found, [&year](const std::string& entry) {
      return entry.ends_with("/inst-date=" + year + "1231");
    })) << year;
  }
}
