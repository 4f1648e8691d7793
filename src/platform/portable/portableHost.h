#pragma once

#include "platform/host.h"

namespace platform {

// The host of machines without Apple's frameworks.
class PortableHost : public Host {
 public:
  std::unique_ptr<CommandOutput> startCommand(const std::string& command) override;
  std::optional<PropertyList> parsePropertyList(std::string document) override;
  std::string computerName() override;
  std::vector<Process> processTable() override;
  std::vector<Bundle> bundles(const std::string& folder,
                              std::span<const std::string_view> keys) override;
  double now() override;
  std::string formatDate(double seconds, std::string_view pattern) override;
};

}  // namespace platform
