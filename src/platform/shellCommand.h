#pragma once

#include <memory>
#include <string>

#include "platform/host.h"

namespace platform {

// Host::startCommand by popen(3), for every POSIX host.
std::unique_ptr<CommandOutput> startShellCommand(const std::string& command);

}  // namespace platform
