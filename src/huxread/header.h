#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/result.h"

namespace huxread {

enum class SectionType { AssetInfo, Snapshot, CustomData };

// The word for it in the header: "assetinfo", "snapshot", "customdata".
const char* typeName(SectionType type);

// One section as the header lists it.
struct Section {
  std::uint32_t number;
  SectionType type;
  std::uint32_t offset;  // bytes from the start of the file
  std::uint32_t length;  // bytes
  // When the machine was scanned; "" when the header does not state it. These are the file's own
  // bytes, control characters included.
  std::string timestamp;
};

// The sections that the header text lists, by increasing number; numbers may be left out. Keys that
// are not known are passed over. Fails when a line is neither a group nor an entry, when a group or
// a key stands there twice, when a key that every header has is missing, when a number is none or
// does not fit 32 bits, and when a type is unknown. Where sections lie is not checked.
Result<std::vector<Section>> parseHeader(std::string_view text);

}  // namespace huxread
