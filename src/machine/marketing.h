#pragma once

#include <string_view>

namespace machine {

// The name that a system is sold under ("Sonoma" for "14.5"), by its version; "" for what this
// program does not know.
std::string_view marketingName(std::string_view osVersion);

}  // namespace machine
