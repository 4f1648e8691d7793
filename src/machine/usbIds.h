#pragma once

#include "machine/description.h"

namespace machine {

// A vendor's or product's number at USB as the profiler writes it, "0x05ac  (Apple Inc.)",
// "apple_vendor_id", as four hexadecimal digits, "05ac"; nothing for any other text.
Value usbId(std::string_view text);

// A device's version as a decimal number with a point, which newer systems write as binary coded
// decimals: "0x0536" is "5.36". Any other text as it is.
Value usbVersion(std::string_view text);

}  // namespace machine
