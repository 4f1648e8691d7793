#include "machine/picture.h"

#include <algorithm>

#include "machine/quantity.h"

namespace machine {

namespace {

void skipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
}

// Takes the digits that the text begins with away from it.
std::optional<std::int64_t> takeNumber(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
  const auto number = wholeNumber(text.substr(0, end));
  text.remove_prefix(end);
  return number;
}

}  // namespace

std::optional<PictureSize> pictureSize(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
  const auto width = takeNumber(text);
  skipBlanks(text);
  if (!text.starts_with('x')) return std::nullopt;
  text.remove_prefix(1);
  skipBlanks(text);
  const auto height = takeNumber(text);
  if (!width || !height || *width == 0 || *height == 0) return std::nullopt;
  return PictureSize{*width, *height};
}

std::optional<double> refreshRate(std::string_view text) {
  const std::size_t at = text.find('@');
  if (at == std::string_view::npos) return std::nullopt;
  text.remove_prefix(at + 1);
  skipBlanks(text);
  const auto rate = leadingNumber(text);
  return rate && *rate > 0 ? rate : std::nullopt;
}

}  // namespace machine
