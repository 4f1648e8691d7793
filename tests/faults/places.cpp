#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "faults/tools.h"

// Where and when the agent runs: what it saves is whole, or it is not there.

namespace fs = std::filesystem;

using Place = Tools;
using Signals = Tools;

TEST_F(Place, KeepsWhatStandsAtItsName) {
  outcome(agent());
  const auto numbered = [name = fs::path(snapshotFiles().at(0)).stem().string()](int number) {
    return name + "(" + std::to_string(number) + ").hux";
  };
  fs::create_directory(numbered(1));
  fs::create_symlink("absent", numbered(2));
  std::ofstream("target") << "target";
  fs::create_symlink("target", numbered(3));
  ASSERT_EQ(outcome("mkfifo '" + numbered(4) + "'").exitCode, 0);
  constexpr int kEarlier = 10'000;
  for (int number = 5; number < kEarlier; ++number) std::ofstream(numbered(number)) << "";
  EXPECT_EQ(outcome(agent()).exitCode, 0);
  read(numbered(kEarlier));
  EXPECT_FALSE(fs::exists("absent"));
  EXPECT_EQ(fileText("target"), "target");
  EXPECT_EQ(fileText(numbered(5)), "");
}

TEST_F(Place, MayHaveAnyNameAndDepth) {
  const Entries whole = scan();
  for (const std::string& name :
       {std::string(255, 'x'), std::string("جرد أجهزة ماك"), std::string("a\n'b\" $(touch c)\\")}) {
    fs::create_directory(name);
    fs::current_path(name);
    EXPECT_EQ(missing(whole, scan()), Entries()) << name;
    fs::current_path("..");
  }
  for (int depth = 0; depth < 20; ++depth) {  // deeper than a path can be long
    fs::create_directory(std::string(255, 'y'));
    fs::current_path(std::string(255, 'y'));
  }
  EXPECT_EQ(missing(whole, scan()), Entries());
}

TEST_F(Place, MayLackStreams) {
  const Entries whole = scan();
  const std::string answered = "echo y | { " + agent("-log") + "; }";
  for (const std::string& line :
       {"<&-; " + agent(), "<&- >&-; " + agent(), "<&- >&- 2>&-; " + agent(), ">&-; " + answered,
        "2>&-; " + answered, ">&- 2>&-; " + answered, ">/dev/full 2>/dev/full; " + answered}) {
    EXPECT_EQ(outcome("exec " + line).exitCode, 0) << line;
    const std::vector<Entries> snapshots = takeSnapshots();
    ASSERT_EQ(snapshots.size(), 1U) << line;
    EXPECT_EQ(missing(whole, snapshots[0]), Entries()) << line;
  }
}

TEST_F(Place, MayBeFullOrNotWritable) {
  if (outcome("unshare --map-root-user --mount true").exitCode != 0) {
    GTEST_SKIP() << "no file systems of one's own here";
  }
  const struct {
    std::string size;
    std::string before;
    std::size_t count;
  } disks[] = {
      {"4k",  "",                       0},
      {"12k", "",                       0},
      {"1m",  "mount -o remount,ro .;", 0},
      {"1m",  "",                       1},
  };
  fs::create_directory("disk");
  for (const auto& [size, before, count] : disks) {
    const Outcome run =
        outcome("unshare --map-root-user --mount sh -c \"mount -t tmpfs -o size=" + size +
                " none disk; cd disk; " + before + " echo y | ( " + agent("") +
                " ); cp -- *.hux .. 2>/dev/null; true\"");
    EXPECT_EQ(takeSnapshots().size(), count) << size;
    EXPECT_EQ(run.errors.find("Cannot create file :/") == std::string::npos, count == 1) << size;
  }
}

TEST_F(Place, MayBeLimited) {
  const struct {
    std::string limit;
    int last, step, quickStep;
    int enough;  // from here on there is a file
  } limits[] = {
      {"-f", 120,    1,   29,     60    }, // units of 512 bytes, of a file
      {"-n", 16,     1,   5,      8     }, // open files
#ifndef SANITIZED  // sanitizers take all memory that could be there
      {"-v", 40'000, 200, 10'000, 30'000}, // kilobytes of memory
#endif
  };
  for (const auto& [limit, last, step, quickStep, enough] : limits) {
    for (int size = 0; size <= last; size += kThorough ? step : quickStep) {
      outcome("ulimit " + limit + " " + std::to_string(size) + "; " + agent());
      const std::size_t count = takeSnapshots().size();
      EXPECT_TRUE(count == 1 || (count == 0 && size < enough)) << limit << " " << size;
    }
  }
}

TEST_F(Place, IsSharedByAgents) {
  outcome("for agent in 1 2 3 4 5 6 7 8; do ( " + agent() + " ) & done; wait");
  EXPECT_EQ(takeSnapshots().size(), 8U);
}

// While a command runs: no file is left.
TEST_F(Signals, EndARunWithoutAFile) {
  std::size_t number = 0;
  for (const auto& [command, output] : answers()) {
    if (number++ % 8 != 0 && !kThorough) continue;
    for (const std::string signal : {"TERM", "INT"}) {
      answer(command, output, "kill -" + signal + " $(cat '" + pathOf("pid") + "')");
      EXPECT_EQ(outcome("echo $$ >pid; " + plainAgent()).exitCode, -1) << command;
      EXPECT_EQ(takeSnapshots().size(), 0U) << command;
    }
    answer(command, output);
  }
}

// At any moment: a file that is there is whole.
TEST_F(Signals, LeaveNoPartOfAFile) {
  const auto start = std::chrono::steady_clock::now();
  outcome(plainAgent());
  ASSERT_EQ(takeSnapshots().size(), 1U);
  const auto longest = 2 * (std::chrono::steady_clock::now() - start);
  const int moments = kThorough ? 200 : 10;
  std::size_t saved = 0;
  for (int moment = 0; moment < moments; ++moment) {
    const std::string line = plainAgent() + " >out";
    const pid_t child = fork();
    if (child == 0) _exit(execl("/bin/sh", "sh", "-c", line.c_str(), nullptr));
    std::this_thread::sleep_for(longest * moment / moments);
    kill(child, moment % 2 == 0 ? SIGTERM : SIGINT);
    waitpid(child, nullptr, 0);
    saved += takeSnapshots().size();
  }
  std::printf("%d moments: %zu files, all whole\n", moments, saved);
}
