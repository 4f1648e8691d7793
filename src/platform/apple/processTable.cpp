#include "platform/apple/processTable.h"

#include <sys/sysctl.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

namespace platform::apple {

namespace {

// The layout of 64-bit systems, x86-64 and arm64 alike: nothing else may be read out of the table.
static_assert(sizeof(kinfo_proc) == 648);
static_assert(offsetof(kinfo_proc, kp_proc.p_pid) == 40);
static_assert(offsetof(kinfo_proc, kp_proc.p_comm) == 243);
static_assert(offsetof(kinfo_proc, kp_eproc.e_ppid) == 560);

// The table as the kernel hands it out; empty when it cannot be read.
std::vector<char> readKernelTable() {
  constexpr int kAttempts = 3;
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::size_t size = 0;
    if (sysctl(name, std::size(name), nullptr, &size, nullptr, 0) != 0) return {};
    std::vector<char> table(size);
    if (sysctl(name, std::size(name), table.data(), &size, nullptr, 0) == 0) {
      table.resize(size);
      return table;
    }
    if (errno != ENOMEM) return {};  // ENOMEM: processes were started in between
  }
  return {};
}

Process readEntry(const char* bytes) {
  kinfo_proc entry{};
  std::memcpy(&entry, bytes, sizeof entry);  // the table promises no alignment
  const char* name = entry.kp_proc.p_comm;
  return {entry.kp_proc.p_pid, entry.kp_eproc.e_ppid,
          std::string(name, strnlen(name, sizeof entry.kp_proc.p_comm - 1))};
}

}  // namespace

std::vector<Process> readProcessTable() {
  const std::vector<char> table = readKernelTable();
  std::vector<Process> processes;
  processes.reserve(table.size() / sizeof(kinfo_proc));
  for (std::size_t at = 0; at + sizeof(kinfo_proc) <= table.size(); at += sizeof(kinfo_proc)) {
    processes.push_back(readEntry(&table[at]));
  }
  return processes;
}

}  // namespace platform::apple
