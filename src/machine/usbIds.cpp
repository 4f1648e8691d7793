#include "machine/usbIds.h"

#include <algorithm>
#include <string>

#include "base/text.h"
#include "machine/cleanText.h"

namespace machine {

Value usbId(std::string_view text) {
  constexpr std::size_t kDigits = 4;
  if (text == "apple_vendor_id") return "05ac";
  if (!text.starts_with("0x") && !text.starts_with("0X")) return {};
  text.remove_prefix(2);
  const std::size_t end = std::min(text.find_first_not_of("0123456789abcdefABCDEF"), text.size());
  if (end == 0 || end > kDigits || (end < text.size() && text[end] != ' ')) return {};
  return std::string(kDigits - end, '0') + toLower(text.substr(0, end));
}

Value usbVersion(std::string_view text) {
  Value known = textValue(text);
  const std::string_view number = textOf(known);
  if (!number.starts_with("0x") || number.size() != 6) return known;
  return std::string(number.substr(number[2] == '0' ? 3 : 2, number[2] == '0' ? 1 : 2)) + "." +
         std::string(number.substr(4));
}

}  // namespace machine
