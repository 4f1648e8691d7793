#include "support/apple/standIn.h"

#include <SystemConfiguration/SystemConfiguration.h>
#include <sys/sysctl.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <utility>

#include "platform/portable/processFiles.h"
#include "support/apple/objects.h"

namespace standIn {

namespace {

std::deque<Object> objects;  // they never move
std::vector<std::string> complaints;

}  // namespace

void complain(const std::string& function, const std::string& what) {
  complaints.push_back(function + ": " + what);
}

Object* make(Object object) {
  return &objects.emplace_back(std::move(object));
}

Object* share(Object* object) {
  ++object->references;
  return object;
}

Object& objectOf(CFTypeRef reference, Kind kind, const char* function) {
  for (Object& object : objects) {
    if (&object != reference) continue;
    if (object.references == 0) complain(function, "a released object (" + object.text + ")");
    if (kind != Any && object.kind != kind) complain(function, "an object of another kind");
    return object;
  }
  complain(function, "no object");
  return *make({kind, "what a wrong call has got", {}, {}, kConstant});
}

void release(Object& object) {
  if (object.references <= 0 || --object.references > 0) return;
  for (Object* part : object.parts) release(*part);
}

std::vector<std::string> takeComplaints() {
  for (const Object& object : objects) {
    if (object.references > 0) complain("never released", object.text);
  }
  objects.clear();
  mac() = Mac();
  return std::exchange(complaints, {});
}

Mac::Mac() : processes(platform::readProcessFiles()) {}

Mac& mac() {
  static Mac current;
  return current;
}

}  // namespace standIn

using standIn::Mac;

CFStringRef SCDynamicStoreCopyComputerName(SCDynamicStoreRef, CFStringEncoding*) {
  const std::optional<std::string>& name = standIn::mac().computerName;
  return name ? standIn::refOf<CFStringRef>(standIn::make({standIn::String, *name})) : nullptr;
}

int sysctl(int* name, unsigned nameLength, void* old, std::size_t* oldSize, void*, std::size_t) {
  Mac& mac = standIn::mac();
  const int table[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
  if (!std::equal(name, name + nameLength, table, table + 3)) return -1;
  const std::size_t needed = mac.processes.size() * sizeof(kinfo_proc);
  if (old == nullptr) {
    *oldSize = needed;
    if (mac.growths-- > 0) mac.processes.push_back({1000, 1, "new"});
    return 0;
  }
  ++mac.tableReads;
  if (mac.tableError != 0 || *oldSize < needed) {
    errno = mac.tableError != 0 ? mac.tableError : ENOMEM;
    return -1;
  }
  *oldSize = needed;
  auto* entry = static_cast<kinfo_proc*>(old);
  for (const platform::Process& process : mac.processes) {
    *entry = {};
    entry->kp_proc.p_pid = process.pid;
    entry->kp_eproc.e_ppid = process.ppid;
    process.name.copy(entry->kp_proc.p_comm, sizeof entry->kp_proc.p_comm - 1);
    ++entry;
  }
  return 0;
}
