#include "machine/quantity.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <span>
#include <string>
#include <system_error>

#include "base/text.h"

namespace machine {
namespace {

struct Unit {
  std::string_view name;  // lower case
  double factor;
};

constexpr Unit kBinary[] = {
    {"byte",  1              },
    {"bytes", 1              },
    {"b",     1              },
    {"kb",    1024.0         },
    {"mb",    1048576.0      },
    {"gb",    1073741824.0   },
    {"tb",    1099511627776.0}
};
constexpr Unit kDecimal[] = {
    {"byte",  1   },
    {"bytes", 1   },
    {"b",     1   },
    {"kb",    1e3 },
    {"mb",    1e6 },
    {"gb",    1e9 },
    {"tb",    1e12}
};
constexpr Unit kMegahertz[] = {
    {"mhz", 1   },
    {"ghz", 1000}
};

// Length of the number that the text begins with; 0 when it begins with none.
std::size_t numberLength(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789";
  const std::size_t whole = std::min(text.find_first_not_of(kDigits), text.size());
  if (whole == 0 || whole == text.size() || (text[whole] != '.' && text[whole] != ','))
    return whole;
  const std::size_t end = std::min(text.find_first_not_of(kDigits, whole + 1), text.size());
  return end == whole + 1 ? whole : end;
}

std::string_view withoutBlanks(std::string_view text) {
  // Regions put a blank, one that does not break a line, or a narrow one between number and unit.
  constexpr std::string_view kBlanks[] = {" ", "\xC2\xA0", "\xE2\x80\xAF"};
  for (bool more = true; more;) {
    more = false;
    for (const std::string_view blank : kBlanks) {
      if (!text.starts_with(blank)) continue;
      text.remove_prefix(blank.size());
      more = true;
    }
  }
  return text;
}

std::optional<std::int64_t> quantity(std::string_view text, std::span<const Unit> units) {
  const std::optional<double> number = leadingNumber(text);
  if (!number) return {};
  const std::string name = toLower(withoutBlanks(text.substr(numberLength(text))));
  const auto unit = std::ranges::find(units, name, &Unit::name);
  if (unit == units.end()) return {};
  const double amount = *number * unit->factor;
  if (amount >= 9.2e18) return {};
  return std::llround(amount);
}

}  // namespace

std::optional<std::int64_t> binaryBytes(std::string_view text) {
  return quantity(text, kBinary);
}

std::optional<std::int64_t> decimalBytes(std::string_view text) {
  return quantity(text, kDecimal);
}

std::optional<std::int64_t> megahertz(std::string_view text) {
  return quantity(text, kMegahertz);
}

std::optional<double> leadingNumber(std::string_view text) {
  std::string number(text.substr(0, numberLength(text)));
  if (number.empty()) return {};
  std::ranges::replace(number, ',', '.');
  const double value = std::strtod(number.c_str(), nullptr);
  if (!std::isfinite(value)) return {};
  return value;
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return {};
  return number;
}

}  // namespace machine
