#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "huxread/container.h"

// Runs the corpus of the fuzzer through the fuzzer's own function.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

TEST(Corpus, OpensTheValidFilesAndNoOther) {
  int files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(ORBEX_SOURCE "/fuzz/corpus/huxFile")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const std::string name = entry.path().filename();
    const bool opened = static_cast<bool>(huxread::Container::parse(bytes));
    EXPECT_EQ(opened, name.starts_with("valid")) << name;
    ++files;
  }
  EXPECT_GT(files, 5);
}
