#include "files.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "command.h"
#include "huxread/salvage.h"
#include "machine/describe.h"
#include "output.h"
#include "platform/host.h"

using huxread::Container;
using huxread::Result;

namespace {

constexpr std::string_view kExtension = ".hux";

bool isFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The names in a folder, sorted; false when it cannot be read.
bool namesIn(const std::string& folder, std::vector<std::string>& names) {
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.c_str()), closedir);
  if (!stream) return false;
  while (const dirent* entry = readdir(stream.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  std::ranges::sort(names);
  return true;
}

void addFolder(const std::string& root, std::vector<std::string>& files, int& code) {
  std::vector<std::string> folders = {root};  // still to be read, the next one last
  while (!folders.empty()) {
    const std::string folder = folders.back();
    folders.pop_back();
    std::vector<std::string> names;
    if (!namesIn(folder, names)) {
      printMessage(folder, std::strerror(errno));
      code = std::max(code, kTrouble);
    }
    std::vector<std::string> below;
    for (const std::string& name : names) {
      std::string path = folder;
      if (!path.ends_with('/')) path += '/';
      path += name;
      struct stat status {};
      if (lstat(path.c_str(), &status) != 0) continue;  // gone meanwhile
      if (S_ISDIR(status.st_mode)) {
        below.push_back(path);
      } else if (name.ends_with(kExtension)) {
        files.push_back(path);
      }
    }
    folders.insert(folders.end(), below.rbegin(), below.rend());
  }
}

}  // namespace

std::vector<std::string> expandFiles(const std::vector<std::string>& arguments, int& code) {
  std::vector<std::string> files;
  for (const std::string& argument : arguments) {
    if (!isFolder(argument)) {
      files.push_back(argument);
      continue;
    }
    const std::size_t before = files.size();
    const int codeBefore = code;
    addFolder(argument, files, code);
    if (files.size() == before && code == codeBefore) {
      printMessage(argument, "no snapshot files (.hux) in this folder");
      code = std::max(code, kTrouble);
    }
  }
  return files;
}

Result<Container> openFile(const std::string& path) {
  Result<std::string> bytes = readBytes(path);
  if (!bytes) return bytes.error();
  Result<Container> file = Container::take(*bytes);
  if (file) return file;
  const huxread::Salvaged salvaged = huxread::salvage(*bytes);
  if (salvaged.damage == huxread::Salvaged::Damage::Foreign) return file;
  return huxread::Error{salvaged.what};
}

Result<std::string> readBytes(const std::string& path) {
  return path == "-" ? huxread::readFile(stdin) : huxread::readFile(path);
}

Result<machine::Description> describeFile(const std::string& path) {
  const Result<Container> file = openFile(path);
  if (!file) return file.error();
  const std::unique_ptr<platform::Host> host = platform::makeHost();
  return machine::describe(*file, *host);
}

namespace {

// Hands out files to threads and prints what they made of them in order. At most a few outcomes
// wait.
class Line {
 public:
  Line(const std::vector<std::string>& files,
       const std::function<Outcome(const std::string& path)>& work)
      : files_(files), work_(work) {}

  int run() {
    const std::size_t count =
        std::min<std::size_t>(files_.size(), std::max(1U, std::thread::hardware_concurrency()));
    ahead_ = 4 * count;
    std::vector<std::thread> threads;
    for (std::size_t i = 1; i < count; ++i) threads.emplace_back([this] { take(); });
    take();
    for (std::thread& thread : threads) thread.join();
    return code_;
  }

 private:
  void take() {
    std::unique_lock lock(mutex_);
    for (;;) {
      room_.wait(lock, [this] { return next_ == files_.size() || next_ < printed_ + ahead_; });
      if (next_ == files_.size()) return;
      const std::size_t mine = next_++;
      lock.unlock();
      Outcome outcome = work_(files_[mine]);
      lock.lock();
      waiting_.emplace(mine, std::move(outcome));
      print();
      room_.notify_all();
    }
  }

  void print() {
    for (auto first = waiting_.find(printed_); first != waiting_.end();
         first = waiting_.find(printed_)) {
      printBytes(first->second.output);
      printErrors(first->second.errors);
      code_ = std::max(code_, first->second.code);
      waiting_.erase(first);
      ++printed_;
    }
  }

  const std::vector<std::string>& files_;
  const std::function<Outcome(const std::string& path)>& work_;
  std::mutex mutex_;
  std::condition_variable room_;
  std::map<std::size_t, Outcome> waiting_;
  std::size_t next_ = 0;
  std::size_t printed_ = 0;
  std::size_t ahead_ = 0;
  int code_ = 0;
};

}  // namespace

int forEachFile(const std::vector<std::string>& files,
                const std::function<Outcome(const std::string& path)>& work) {
  return Line(files, work).run();
}
