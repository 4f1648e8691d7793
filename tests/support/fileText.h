#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// What a file holds, byte for byte; "" when it cannot be read.
inline std::string fileText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
