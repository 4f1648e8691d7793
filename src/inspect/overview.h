#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "inspect/findings.h"

// What can be said of many machines at once, each by its latest scan: what a database answers and a
// page draws, without either knowing the other.

namespace inspect {

// How many machines have it.
struct Share {
  std::string label;
  std::size_t machines = 0;
};

// Of machines, so many and the first of them.
struct MachineList {
  static constexpr std::size_t kMost = 100;
  struct Machine {
    std::string name;
    std::string owner;   // serial number, else UUID, else nothing
    std::string detail;  // may be ""
  };
  std::size_t count = 0;
  std::vector<Machine> first;  // at most kMost
};

struct Overview {
  // Scans and their files.
  std::size_t machines = 0;
  std::size_t scans = 0;
  std::int64_t fileBytes = 0;
  std::string firstScan;  // "2026-11-21T16:22:05+01:00", "" when no scan knows its time
  std::string lastScan;

  // Machines of which nothing is known are in none of them.
  struct System {
    std::string name;  // "macOS"
    std::string version;
    std::string marketingName;
    std::size_t machines = 0;
  };
  std::vector<System> systems;
  struct Model {
    std::string id;
    std::string name;
    std::size_t machines = 0;
  };
  std::vector<Model> models;
  struct Memory {
    std::int64_t megabytes = 0;
    std::size_t machines = 0;
  };
  std::vector<Memory> memory;    // in ascending order
  std::vector<Share> freeSpace;  // of the startup volume; the first has too little
  std::vector<Share> ages;       // of the latest scan, the youngest first
  MachineList unseen;            // not scanned for kUnseenDays, the longest first
  static constexpr int kUnseenDays = 30;

  struct Found {
    const FindingKind* kind = nullptr;
    MachineList machines;
  };
  std::vector<Found> findings;  // by id; those that no machine has are left out
  std::size_t withRemarks = 0;  // machines

  struct Application {
    std::string name;
    std::size_t machines = 0;
    std::vector<Share> versions;  // those that most machines have
    std::size_t otherVersions = 0;
  };
  std::vector<Application> everywhere;  // what nearly all machines have, at most 100
  std::size_t otherEverywhere = 0;      // names that are not among them
  std::vector<Application> software;    // what most of the others have, at most 100
  std::size_t otherSoftware = 0;
};

}  // namespace inspect
