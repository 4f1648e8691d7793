#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace redact {

// Whether the number in a display's block is one; some stand in for a missing one.
bool statesDisplay(std::uint32_t number);

// Whether a text is an EDID block (VESA E-EDID 1.4) in hexadecimal digits, with "0x" or without.
bool isDisplayBlock(std::string_view text);

// Such a block without its serial number: `find` gives
// what is to stand there for one, above 0. With it the last of these. Nothing when there is none,
// or when the text is no such block.
std::optional<std::pair<std::string, unsigned>> displayBlockWithout(
    std::string_view digits,
    const std::function<std::optional<unsigned>(const std::string& serial)>& find);

}  // namespace redact
