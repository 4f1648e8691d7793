#include "run/snapshotName.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "base/formatString.h"
#include "base/text.h"

namespace {

// A byte within a UTF-8 sequence, not its first.
bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::string currentDirectory() {
  const std::unique_ptr<char, decltype(&std::free)> directory(getcwd(nullptr, 0), &std::free);
  // Gone while this process stands in it: nothing can be created there, under any name.
  return directory == nullptr ? "." : directory.get();
}

// False when something of that name exists, a link that leads nowhere too; true when the file is
// created, or cannot be.
bool claim(const std::string& path) {
  constexpr mode_t kReadWrite = 0666;  // less the umask, as fopen(3) creates files
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReadWrite);
  if (file < 0) return errno != EEXIST;
  close(file);
  return true;
}

}  // namespace

std::string snapshotStem(std::string_view name, std::string_view hardwareAddress) {
  constexpr std::size_t kLongestName = 200;  // bytes; systems take 255, with address and counter
  constexpr std::size_t kLongestAddress = 40;
  if (name.size() > kLongestName) {
    std::size_t end = kLongestName;
    while (end > 0 && isContinuation(name[end])) --end;
    name = name.substr(0, end);
  }
  std::string stem(hardwareAddress.substr(0, kLongestAddress));
  std::erase(stem, '-');
  stem = toUpper(name) + "_" + stem;
  std::ranges::replace_if(
      stem, [](char c) { return c == '/' || c == '\x7F' || (c >= '\0' && c < ' '); }, '_');
  return stem;
}

std::string claimSnapshotPath(const std::string& stem) {
  const std::string directory = currentDirectory();
  std::string path = formatString("%s/%s.hux", directory.c_str(), stem.c_str());
  for (int counter = 1; !claim(path); ++counter) {
    path = formatString("%s/%s(%d).hux", directory.c_str(), stem.c_str(), counter);
  }
  return path;
}
