#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Figures and lists in words for people; data is valueText's.

namespace show {

// The parts that are not empty, with `separator` between them.
std::string joined(const std::vector<std::string>& parts, std::string_view separator = ", ");

// "1 disk", "2 disks"
std::string count(std::size_t many, std::string_view thing);

// "500 GB", in decimal units as on a drive's label; "" for what is not known or negative.
std::string size(const std::optional<std::int64_t>& bytes);

// "361 of 500 GB", both in the unit of the whole.
std::string sizeOf(std::int64_t part, std::int64_t whole);

// "16 GB" of 2^30 bytes each, as memory is sold; "" for what is not known or not above 0.
std::string memorySize(const std::optional<std::int64_t>& megabytes);

}  // namespace show
