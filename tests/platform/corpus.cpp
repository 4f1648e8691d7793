#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/portable/propertyListReader.h"

// Runs the corpus of the fuzzer through the fuzzer's own function.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

TEST(PropertyListCorpus, IsReadWhereItIsValid) {
  int files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(PROJECT_FOLDER "/fuzz/corpus/propertyList")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const std::string name = entry.path().filename();
    EXPECT_EQ(platform::readPropertyList(bytes).has_value(), name.starts_with("valid")) << name;
    ++files;
  }
  EXPECT_GT(files, 5);
}
