#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "machine/description.h"
#include "show/terminal.h"

namespace show {

// A machine on one screen: at most 23 lines of at most 80 columns, fewer on a narrower terminal.
// What is not known has no line. Colours and bars only on a terminal. `file` is what the user calls
// the file, for the command that tells more, `findings` what stands at the foot ("the firewall is
// off"), the gravest first, `now` the present in seconds since 1970-01-01 00:00:00 UTC.
std::string card(const machine::Description& machine, std::string_view file,
                 std::span<const std::string> findings, std::int64_t now, const Terminal& terminal);

}  // namespace show
