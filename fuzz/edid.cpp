#include "edid/edid.h"

#include "fuzz/fuzzers.h"

// Any bytes as the EDID block of a monitor with its extensions.
bool fuzz::edid(const std::string& input) {
  return decodeEdid({reinterpret_cast<const std::uint8_t*>(input.data()), input.size()})
      .has_value();
}
