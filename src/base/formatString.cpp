#include "base/formatString.h"

#include <cstdio>
#include <cstring>

std::size_t measureFormat(const char* format, std::va_list arguments) {
  std::va_list copy;
  va_copy(copy, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  return length < 0 ? 0 : static_cast<std::size_t>(length);
}

std::size_t measureFormatted(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const std::size_t length = measureFormat(format, arguments);
  va_end(arguments);
  return length;
}

std::string formatString(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text(measureFormat(format, arguments), '\0');
  // A std::string keeps room for the terminator that vsnprintf writes behind the last byte.
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  va_end(arguments);
  text.resize(std::strlen(text.c_str()));
  return text;
}
