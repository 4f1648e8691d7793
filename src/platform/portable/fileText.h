#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

namespace platform {

// The content of a file; nothing when it cannot be opened, what was read until then when reading
// fails: what is opened may turn out to be a folder, or the process it tells of may have ended.
inline std::optional<std::string> readFileText(const std::filesystem::path& path) {
  const std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream text;
  text << file.rdbuf();  // unlike an iterator over the file, this does not throw
  return text.str();
}

}  // namespace platform
