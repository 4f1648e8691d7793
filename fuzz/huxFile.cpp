#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "huxread/check.h"
#include "huxread/container.h"
#include "huxread/salvage.h"

// Opens any bytes as a snapshot file and inflates and checks every section, or salvages what can be
// read of them. fuzz/corpus/huxFile holds the seeds; the tests run them through this same function.
//
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -Isrc fuzz/huxFile.cpp
//       src/huxread/*.cpp src/base/formatString.cpp -lz -o huxFile
//   ./huxFile -max_len=4096 NEW_FOLDER fuzz/corpus/huxFile

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const auto container = huxread::Container::parse(bytes);
  const huxread::Salvaged salvaged = huxread::salvage(bytes);
  for (const huxread::SalvagedSection& section : salvaged.sections) {
    if (section.offset > size || section.used > size - section.offset) std::abort();
    (void)huxread::extentOf(section);
  }
  if (!container) return 0;
  (void)huxread::check(*container);
  const bool whole = salvaged.damage == huxread::Salvaged::Damage::None;
  for (const huxread::Section& section : container->sections()) {
    if (static_cast<bool>(container->text(section.number)) < whole) std::abort();
  }
  return 0;
}
