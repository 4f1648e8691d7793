#include "run/snapshotFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>

#include "base/formatString.h"
#include "base/text.h"
#include "base/utf8.h"

namespace {

std::string currentDirectory() {
  const std::unique_ptr<char, decltype(&std::free)> directory(getcwd(nullptr, 0), &std::free);
  // Gone while this process stands in it: nothing can be created there, under any name.
  return directory == nullptr ? "." : directory.get();
}

// While it lives, signals that could end this process wait.
class SignalsWait {
 public:
  SignalsWait() {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsWait() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;

 private:
  sigset_t before_{};
};

// A file that did not exist, a link that leads nowhere counted; -1 when there is none, see errno.
int create(const std::string& name) {
  constexpr mode_t kReadWrite = 0666;  // less the umask, as fopen(3) creates files
  return open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReadWrite);
}

bool writeAll(int file, std::string_view image) {
  while (!image.empty()) {
    const ssize_t written = write(file, image.data(), image.size());
    if (written <= 0) return false;
    image.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

std::string snapshotStem(std::string_view name, std::string_view hardwareAddress) {
  constexpr std::size_t kLongestName = 200;  // bytes; systems take 255, with address and counter
  constexpr std::size_t kLongestAddress = 40;
  if (name.size() > kLongestName) {
    std::size_t end = kLongestName;
    while (end > 0 && isUtf8Continuation(name[end])) --end;
    name = name.substr(0, end);
  }
  std::string stem(hardwareAddress.substr(0, kLongestAddress));
  std::erase(stem, '-');
  stem = toUpper(name) + "_" + stem;
  std::ranges::replace_if(
      stem, [](char c) { return c == '/' || c == '\x7F' || (c >= '\0' && c < ' '); }, '_');
  return stem;
}

SavedFile saveSnapshotFile(const std::string& stem, std::string_view image) {
  const std::string directory = currentDirectory() + "/";
  // By its name alone: the path of a directory may be longer than what the system opens.
  std::string name = stem + ".hux";
  const SignalsWait signalsWait;
  int file = create(name);
  for (int counter = 1; file < 0 && errno == EEXIST; ++counter) {
    name = formatString("%s(%d).hux", stem.c_str(), counter);
    file = create(name);
  }
  if (file < 0) return {directory + name};
  const bool written = writeAll(file, image);
  const bool saved = close(file) == 0 && written;  // some file systems tell of a full disk only now
  if (!saved) unlink(name.c_str());
  return {directory + name, saved};
}
