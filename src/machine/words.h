#pragma once

#include <string_view>

namespace machine {

// The word for one of the profiler's tokens ("Built-in" for "spdisplays_builtin"), as its window
// shows it in English, "" for one that says that nothing is known; any other text as it is.
std::string_view wordOf(std::string_view text);

// Whether the name of a model, a processor or a video adapter is that of a virtual machine.
bool namesVirtual(std::string_view name);

}  // namespace machine
