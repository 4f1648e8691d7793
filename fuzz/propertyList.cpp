#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "collect/plistToTags.h"
#include "platform/portable/portableHost.h"
#include "platform/portable/propertyListReader.h"

// Reads any bytes as a property list, converts it as a profile and as a dictionary, and writes the
// text form into the room that is allotted to it. fuzz/corpus/propertyList holds the seeds; the
// tests run them through this same function.
//
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -Isrc fuzz/propertyList.cpp
//       src/platform/*.cpp src/platform/portable/*.cpp src/collect/plistToTags.cpp
//       src/collect/dates.cpp src/keva/*.cpp src/base/*.cpp -lpugixml -lz -o propertyList
//   ./propertyList -max_len=4096 NEW_FOLDER fuzz/corpus/propertyList

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto list =
      platform::readPropertyList(std::string(reinterpret_cast<const char*>(data), size));
  if (!list) return 0;
  platform::PortableHost host;
  kevaDoc document(true, "Macintosh");
  convertProfile(host, *list, document);
  if (list->dictionary() != nullptr) convertDictionary(host, *list->dictionary(), "", document);
  std::string text(document.textSize() + 1, '\0');
  const unsigned length = document.writeText(text.data(), 0, false, false);
  if (length >= text.size() || text[length] != '\0') std::abort();
  return 0;
}
