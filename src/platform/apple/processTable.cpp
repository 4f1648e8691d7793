#include "platform/apple/processTable.h"

#include <sys/sysctl.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>

namespace platform::apple {

namespace {

// The layout of 64-bit systems, x86-64 and arm64 alike: nothing else may be read out of the table.
static_assert(sizeof(kinfo_proc) == 648);
static_assert(offsetof(kinfo_proc, kp_proc.p_pid) == 40);
static_assert(offsetof(kinfo_proc, kp_proc.p_comm) == 243);
static_assert(offsetof(kinfo_proc, kp_eproc.e_ppid) == 560);

struct Table {
  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;
};

// The table as the kernel hands it out; empty when it cannot be read or memory does not hold it.
Table readKernelTable() {
  constexpr int kAttempts = 3;
  int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    Table table;
    if (sysctl(name, std::size(name), nullptr, &table.size, nullptr, 0) != 0) return {};
    table.bytes.reset(new (std::nothrow) char[table.size]);
    if (!table.bytes) return {};
    const int result = sysctl(name, std::size(name), table.bytes.get(), &table.size, nullptr, 0);
    if (result == 0) return table;
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
  const Table table = readKernelTable();
  const std::size_t count = table.size / sizeof(kinfo_proc);
  std::vector<Process> processes;
  processes.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    processes.push_back(readEntry(&table.bytes[i * sizeof(kinfo_proc)]));
  }
  return processes;
}

}  // namespace platform::apple
