// Writes the snapshot files of a made-up fleet, as the agent would: every file is a whole scan of a
// machine that does not exist.
//
//   fleetGenerator COUNT SCANS SEED FOLDER
//
// COUNT machines, each scanned SCANS times, a week apart; the same arguments give the same fleet.
// The newest scans are of November 2026. FOLDER must exist; files in it are left alone.

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include "fleetMac.h"
#include "run/scanRun.h"

namespace {

constexpr double kNewest = 816'768'000;  // 2026-11-19 08:00:00 UTC in seconds since 2001
constexpr double kWeek = 7 * 86400;

void scanMac(FleetMac mac, int number, int scans, FakeHost& host) {
  const RunOptions options{1, 0, 0};
  for (int scan = 0; scan < scans; ++scan) {
    if (scan > 0) mac.live();
    const int weeksAgo = scans - 1 - scan + mac.weeksUnseen();
    // Not all at once: spread over a day.
    const double time = kNewest - weeksAgo * kWeek + number * 37 % 86400 - 43200;
    mac.answer(host, time);
    scanRun(host, options, true, mac.debug(), "", "");
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 5 || chdir(arguments[4]) != 0) {
    std::fputs("usage: fleetGenerator COUNT SCANS SEED FOLDER\n", stderr);
    return 2;
  }
  const int machines = std::atoi(arguments[1]);
  const int scans = std::atoi(arguments[2]);
  const auto seed = static_cast<std::uint64_t>(std::atoll(arguments[3]));
  // What the agent prints of each scan is of no use here.
  if (std::freopen("/dev/null", "w", stdout) == nullptr) return 2;

  std::atomic<int> next = 0;
  // Before the threads: a host sets the time zone of the process.
  std::vector<std::unique_ptr<FakeHost>> hosts(std::max(1U, std::thread::hardware_concurrency()));
  for (auto& host : hosts) host = std::make_unique<FakeHost>();
  std::vector<std::thread> threads;
  for (const auto& host : hosts) {
    threads.emplace_back([&next, machines, scans, seed, &host] {
      for (int i = next++; i < machines; i = next++) scanMac({seed, i}, i, scans, *host);
    });
  }
  for (std::thread& thread : threads) thread.join();
  return 0;
}
