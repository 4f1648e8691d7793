#pragma once

#include <string_view>

namespace page {

// The style sheet of all pages: light and dark, as whoever reads prefers, on screens of 360 to 2000
// pixels and on paper. Without it a page reads from top to bottom all the same.
extern const std::string_view kStyle;

}  // namespace page
