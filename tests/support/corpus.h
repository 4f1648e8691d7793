#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "support/fileText.h"

// The fuzzer's function, which is linked to the test.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Runs a corpus of fuzz/corpus through its fuzzer, and expects `isValid` of the files whose names
// begin with "valid" and of no other.
template <typename IsValid>
void checkCorpus(const std::string& folder, const IsValid& isValid) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string bytes = fileText(entry.path());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const std::string name = entry.path().filename();
    EXPECT_EQ(isValid(bytes), name.starts_with("valid")) << name;
    ++files;
  }
  EXPECT_GT(files, 5);
}
