#pragma once

#include <string>
#include <string_view>

#include "inspect/compare.h"
#include "machine/description.h"

namespace page {

// All that is known of a machine as one page, to look at and to print. `file` is what the file is
// called, without its folder; `program` made the page: "huxutil 17.05.24".
std::string report(const machine::Description& machine, std::string_view file,
                   std::string_view program);

// What changed between two files, as one page.
struct Side {
  const machine::Description& machine;
  std::string_view file;
};
std::string comparison(const Side& before, const Side& after, const inspect::Comparison& compared,
                       std::string_view program);

}  // namespace page
