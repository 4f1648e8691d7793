#include <cstddef>
#include <cstdint>
#include <string>

#include "huxread/container.h"

// Opens any bytes as a snapshot file and inflates every section. fuzz/corpus/huxFile holds the
// seeds; the tests run them through this same function.
//
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -Isrc fuzz/huxFile.cpp
//       src/huxread/*.cpp src/base/formatString.cpp -lz -o huxFile
//   ./huxFile -max_len=4096 NEW_FOLDER fuzz/corpus/huxFile

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto container =
      huxread::Container::parse(std::string(reinterpret_cast<const char*>(data), size));
  if (!container) return 0;
  for (const huxread::Section& section : container->sections()) {
    (void)container->text(section.number);
  }
  return 0;
}
