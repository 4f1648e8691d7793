#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/result.h"

namespace huxread {

enum class SectionType { AssetInfo, Snapshot, CustomData, Unknown };

// The word for it in the header: "assetinfo", "snapshot", "customdata"; "unknown" for any other.
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

struct Header {
  std::vector<Section> sections;  // by increasing number; numbers may be left out

  // What is odd about the header and what of it was passed over: keys that are not known, sections
  // that are counted but not listed. In words without text taken from the file.
  std::vector<std::string> remarks;
};

// Fails when a line is neither a group nor an entry, when a group or a key stands there twice, when
// the place of a section or a count is missing, and when a number is none or does not fit 32 bits.
// Where sections lie is not checked.
Result<Header> parseHeader(std::string_view text);

}  // namespace huxread
