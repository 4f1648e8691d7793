#pragma once

#include <string>
#include <string_view>

namespace inspect {

// The text in small letters, for comparing: the letters of Latin (as far as Latin Extended-A),
// Greek and Cyrillic script that have a small form one to one. Anything else, also what is no
// UTF-8, stays.
std::string foldCase(std::string_view text);

}  // namespace inspect
