#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/host.h"

namespace platform {

// Host::processTable from /proc (proc(5)), in its order; empty on systems that have none.
std::vector<Process> readProcessFiles();

// One process from the text of its /proc/PID/stat: "42 (name) S 1 ...". The name may hold blanks
// and parentheses. Nothing when the text is of another shape.
std::optional<Process> parseProcessStat(std::string_view stat);

}  // namespace platform
