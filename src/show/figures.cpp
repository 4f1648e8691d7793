#include "show/figures.h"

#include <algorithm>
#include <iterator>

#include "base/formatString.h"

namespace show {

namespace {

// One decimal below 10, unless it is 0.
std::string figure(double amount) {
  const std::string rounded = formatString(amount < 10 ? "%.1f" : "%.0f", amount);
  return rounded.ends_with(".0") ? rounded.substr(0, rounded.size() - 2) : rounded;
}

struct Unit {
  const char* name;
  double bytes;
};
constexpr Unit kUnits[] = {
    {"TB",    1e12},
    {"GB",    1e9 },
    {"MB",    1e6 },
    {"KB",    1e3 },
    {"bytes", 1   }
};

const Unit& unitFor(double bytes) {
  return *std::ranges::find_if(std::begin(kUnits), std::prev(std::end(kUnits)),
                               [bytes](const Unit& unit) { return bytes >= unit.bytes; });
}

}  // namespace

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string whole;
  for (const std::string& part : parts) {
    if (!part.empty() && !whole.empty()) whole += separator;
    whole += part;
  }
  return whole;
}

std::string count(std::size_t many, std::string_view thing) {
  return formatString("%zu ", many) + std::string(thing) + (many == 1 ? "" : "s");
}

std::string size(const std::optional<std::int64_t>& bytes) {
  if (!bytes || *bytes < 0) return "";
  const auto amount = static_cast<double>(*bytes);
  const Unit& unit = unitFor(amount);
  return figure(amount / unit.bytes) + " " + unit.name;
}

std::string sizeOf(std::int64_t part, std::int64_t whole) {
  return figure(static_cast<double>(part) / unitFor(static_cast<double>(whole)).bytes) + " of " +
         size(whole);
}

std::string memorySize(const std::optional<std::int64_t>& megabytes) {
  if (!megabytes || *megabytes <= 0) return "";
  if (*megabytes < 1024) return formatString("%d MB", static_cast<int>(*megabytes));
  return figure(static_cast<double>(*megabytes) / 1024) + " GB";
}

}  // namespace show
