#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/fakeHost.h"

// A made-up Mac of a fleet, which grows older from scan to scan. Everything follows from the seed
// and its number; only the figures (counts, sizes, shares) are those of real fleets, every name is
// invented.
class FleetMac {
 public:
  FleetMac(std::uint64_t seed, int number);

  // A week: applications come, go and are updated, the system too, volumes fill.
  void live();

  // Scanned for support, which records more than a snapshot: as newer Macs should be.
  bool debug() const;

  // How long ago its last scan is when the newest of the fleet is now; most were seen this week.
  int weeksUnseen() const { return weeksUnseen_; }

  // What the machine answers to a scan at that time (seconds since 2001).
  void answer(FakeHost& host, double time);

 private:
  struct Application {
    int number;   // in the pool of the fleet
    int release;  // counted from 0
  };

  int upTo(int limit);  // 0 ... limit - 1
  bool once(int many);  // true one time of so many
  void install(int application);

  std::string hardware() const;
  std::string software() const;
  std::string memory() const;
  std::string storage() const;
  std::string disk() const;
  std::string network() const;
  std::string locations() const;
  std::string displays() const;
  std::string power() const;
  std::string firewall() const;
  std::string applications() const;
  std::string address() const;
  std::string diskModel() const;
  bool isSilicon() const;
  void addProcesses(FakeHost& host);

  std::mt19937_64 random_;
  int number_;
  std::size_t model_;
  std::size_t system_;
  int memory_;         // GB
  std::int64_t disk_;  // bytes
  std::int64_t free_;  // bytes
  int weeksUnseen_ = 0;
  int uptime_ = 1;  // days
  int cycles_;      // of the battery
  bool failing_;
  bool firewall_;
  bool encrypted_;
  std::string serial_;
  std::string uuid_;
  std::string user_;
  std::string name_;
  std::vector<Application> applications_;
};
