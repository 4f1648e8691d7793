#include "platform/portable/portableHost.h"

#include <sys/utsname.h>

#include <utility>

#include "platform/portable/bundleFolder.h"
#include "platform/portable/calendar.h"
#include "platform/portable/processFiles.h"
#include "platform/portable/propertyListReader.h"
#include "platform/shellCommand.h"

namespace platform {

std::unique_ptr<CommandOutput> PortableHost::startCommand(const std::string& command) {
  return startShellCommand(command);
}

std::optional<PropertyList> PortableHost::parsePropertyList(std::string document) {
  return readPropertyList(std::move(document));
}

std::string PortableHost::computerName() {
  utsname names{};
  return uname(&names) == 0 ? names.nodename : "";
}

std::vector<Process> PortableHost::processTable() {
  return readProcessFiles();
}

std::vector<Bundle> PortableHost::bundles(const std::string& folder,
                                          std::span<const std::string_view> keys) {
  return readBundleFolder(folder, keys);
}

double PortableHost::now() {
  return presentTime();
}

std::string PortableHost::formatDate(double seconds, std::string_view pattern) {
  return formatLocalDate(seconds, pattern);
}

}  // namespace platform
