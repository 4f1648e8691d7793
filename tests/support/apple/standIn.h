#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/host.h"

// A Mac of a test: the calls of CoreFoundation, SystemConfiguration and sysctl(3) that the agent
// uses, for machines that have none of them. They behave as observed on real ones (zero is a 32-bit
// number, dictionaries are enumerated in no order, every folder is a bundle) and count references:
// a released object stays, so that its use is noticed.
namespace standIn {

struct Mac {
  Mac();  // its processes are those of this machine

  std::optional<std::string> computerName = "stand-in";  // nothing: unknown
  std::string region = "en_US";                          // or another one of coreFoundation.cpp
  std::string formattedFor;  // the region that the last date was formatted for

  // What the next property list is parsed to, in the place of its text: the object of a binary
  // list.
  const void* binaryList = nullptr;

  std::vector<platform::Process> processes;
  int growths = 0;     // how often a process is started after the table's size was asked for
  int tableError = 0;  // the errno with which the table is not handed out
  int tableReads = 0;  // how often it was asked for
};

// The Mac of the running test.
Mac& mac();

// What was wrong with references: objects never released, released too often or used afterwards,
// each as "FUNCTION: what". Forgets all objects and makes mac() a new one.
std::vector<std::string> takeComplaints();

}  // namespace standIn
