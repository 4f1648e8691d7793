#include "redact/redact.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "huxread/handmade.h"
#include "support/fakeHost.h"

// Redacts a file with any bytes as its inventory, or as the profiler's document when they begin
// like one. Where they can be read, so can the result, with as many lines and elements; and what is
// told to be left in it is nothing. fuzz/corpus/redact holds the seeds; the tests run them through
// this same function.
//
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -Isrc -Itests fuzz/redact.cpp
//       tests/support/fakeHost.cpp src/redact/*.cpp src/machine/*.cpp src/machine/*/*.cpp
//       src/inspect/letterCase.cpp src/keva/deflate.cpp src/huxread/*.cpp src/edid/*.cpp
//       src/platform/*.cpp src/platform/portable/*.cpp src/base/*.cpp -lz -lpugixml -o redact
//   ./redact -max_len=4096 NEW_FOLDER fuzz/corpus/redact

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const bool profile = text.starts_with("<?xml");
  const auto file = huxread::Container::parse(profile ? fileOfOne("customdata", zlibStream(text))
                                                      : fileOfOne("snapshot", blob(text)));
  FakeHost host;
  const auto result = redact::redact(*file, host, {}, "name");
  if (!result) return 0;
  const auto after = huxread::Container::parse(result->file);
  if (!after || after->sections().size() != 1) std::abort();
  const auto now = after->text(0);
  if (!now) std::abort();
  // A line is an attribute, an element a text, which may have line ends of its own.
  const char mark = profile ? '<' : '\n';
  if (std::ranges::count(*now, mark) != std::ranges::count(text, mark)) std::abort();
  const auto again = redact::redact(*after, host, {}, "name");
  if (!again && !profile) std::abort();
  return 0;
}
