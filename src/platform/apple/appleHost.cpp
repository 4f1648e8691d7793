#include "platform/apple/appleHost.h"

#include <SystemConfiguration/SystemConfiguration.h>

#include "platform/apple/bundleFolder.h"
#include "platform/apple/calendar.h"
#include "platform/apple/cfValue.h"
#include "platform/apple/processTable.h"
#include "platform/apple/propertyListReader.h"
#include "platform/shellCommand.h"

namespace platform::apple {

std::unique_ptr<CommandOutput> AppleHost::startCommand(const std::string& command) {
  return startShellCommand(command);
}

std::optional<PropertyList> AppleHost::parsePropertyList(std::string document) {
  return readPropertyList(document);
}

std::string AppleHost::computerName() {
  const Owned<CFStringRef> name(SCDynamicStoreCopyComputerName(nullptr, nullptr));
  return textOf(name.get());
}

std::vector<Process> AppleHost::processTable() {
  return readProcessTable();
}

std::vector<Bundle> AppleHost::bundles(const std::string& folder,
                                       std::span<const std::string_view> keys) {
  return readBundleFolder(folder, keys);
}

double AppleHost::now() {
  return presentTime();
}

std::string AppleHost::formatDate(double seconds, std::string_view pattern) {
  return formatLocalDate(seconds, pattern);
}

}  // namespace platform::apple
