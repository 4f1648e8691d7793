#pragma once

#include <vector>

#include "platform/host.h"

namespace platform::apple {

// Host::processTable from the kernel, by sysctl(3).
std::vector<Process> readProcessTable();

}  // namespace platform::apple
