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
        // Whoever reads a link to nothing says so; a pipe would be waited for.
        if (stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) {
          files.push_back(path);
        } else {
          printMessage(path, "is no file; left out");
          code = std::max(code, kNo);
        }
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
  return openBytes(*bytes);
}

Result<Container> openBytes(std::string& bytes) {
  Result<Container> file = Container::take(bytes);
  if (file) return file;
  const huxread::Salvaged salvaged = huxread::salvage(bytes);
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

// Hands out numbers to threads and does in order what they made of them. Whoever is ready first
// does all that is due, while the others go on.
class Line {
 public:
  Line(std::size_t count, const std::function<std::function<void()>(std::size_t)>& work)
      : count_(count), work_(work) {}

  void run() {
    const std::size_t threadCount =
        std::min<std::size_t>(count_, std::max(1U, std::thread::hardware_concurrency()));
    ahead_ = 4 * threadCount;
    std::vector<std::thread> threads;
    for (std::size_t i = 1; i < threadCount; ++i) threads.emplace_back([this] { take(); });
    take();
    for (std::thread& thread : threads) thread.join();
  }

 private:
  void take() {
    std::unique_lock lock(mutex_);
    for (;;) {
      room_.wait(lock, [this] { return next_ == count_ || next_ < done_ + ahead_; });
      if (next_ == count_) return;
      const std::size_t mine = next_++;
      lock.unlock();
      std::function<void()> rest = work_(mine);
      lock.lock();
      waiting_.emplace(mine, std::move(rest));
      finish(lock);
    }
  }

  void finish(std::unique_lock<std::mutex>& lock) {
    if (finishing_) return;
    finishing_ = true;
    for (auto first = waiting_.find(done_); first != waiting_.end(); first = waiting_.find(done_)) {
      const std::function<void()> rest = std::move(first->second);
      waiting_.erase(first);
      lock.unlock();
      rest();
      lock.lock();
      ++done_;
      room_.notify_all();
    }
    finishing_ = false;
  }

  const std::size_t count_;
  const std::function<std::function<void()>(std::size_t)>& work_;
  std::mutex mutex_;
  std::condition_variable room_;
  std::map<std::size_t, std::function<void()>> waiting_;
  std::size_t next_ = 0;
  std::size_t done_ = 0;
  std::size_t ahead_ = 0;
  bool finishing_ = false;
};

}  // namespace

void forEachInOrder(std::size_t count,
                    const std::function<std::function<void()>(std::size_t)>& work) {
  if (count > 0) Line(count, work).run();
}

int forEachFile(const std::vector<std::string>& files,
                const std::function<Outcome(const std::string& path)>& work) {
  int code = kDone;
  forEachInOrder(files.size(), [&](std::size_t i) -> std::function<void()> {
    Outcome made = whileMemoryLasts([&] { return work(files[i]); },
                                    [&] {
                                      return Outcome{"", message(files[i], kNoMemory), kTrouble};
                                    });
    return [outcome = std::move(made), &code] {
      outcome.safe ? printOutput(outcome.output) : printBytes(outcome.output);
      printErrors(outcome.errors);
      code = std::max(code, outcome.code);
    };
  });
  return code;
}
