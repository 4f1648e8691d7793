#include "machine/valueText.h"

#include <cinttypes>
#include <cstdlib>
#include <variant>

#include "base/formatString.h"

namespace machine {

std::string valueText(const Value& value) {
  if (const bool* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (const std::int64_t* number = std::get_if<std::int64_t>(&value)) {
    return formatString("%" PRId64, *number);
  }
  if (const double* number = std::get_if<double>(&value)) {
    const std::string text = formatString("%.15g", *number);
    return std::strtod(text.c_str(), nullptr) == *number ? text : formatString("%.17g", *number);
  }
  return std::string(textOf(value));
}

}  // namespace machine
