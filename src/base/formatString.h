#pragma once

#include <cstdarg>
#include <string>

// The one printf-style formatter: commands, paths, file names and numeric texts are built with it.

// The formatted text, cut at its first NUL (an argument may hold one). A format that cannot be
// formatted gives the empty text.
[[gnu::format(printf, 1, 2)]] std::string formatString(const char* format, ...);

// Number of bytes the formatted text has, its terminator not counted; 0 when it cannot be
// formatted. `arguments` stays usable. The variadic twin has a
// name of its own: where va_list is a char*, an overload would take a text for it.
std::size_t measureFormat(const char* format, std::va_list arguments);
[[gnu::format(printf, 1, 2)]] std::size_t measureFormatted(const char* format, ...);
