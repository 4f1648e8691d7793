#include <cstddef>
#include <cstdint>

#include "fuzz/fuzzers.h"

// libFuzzer calls this; FUZZER is the name of a function of fuzzers.h.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::FUZZER(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
