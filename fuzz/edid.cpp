#include <cstddef>
#include <cstdint>

#include "edid/edid.h"

// Decodes any bytes as an EDID block with its extensions. fuzz/corpus/edid holds the seeds; the
// tests run them through this same function.
//
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -Isrc fuzz/edid.cpp
//       src/edid/edid.cpp src/edid/videoModes.cpp src/base/digits.cpp
//       src/base/text.cpp src/base/formatString.cpp -o edid
//   ./edid -max_len=640 NEW_FOLDER fuzz/corpus/edid

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  (void)decodeEdid({data, size});
  return 0;
}
