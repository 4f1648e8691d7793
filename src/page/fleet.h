#pragma once

#include <string>
#include <string_view>

#include "inspect/overview.h"

namespace page {

// Many machines on one page, which is of the same size for ten thousand of them as for a hundred.
// `program` made the page: "huxutil 17.05.24".
std::string fleet(const inspect::Overview& overview, std::string_view program);

}  // namespace page
