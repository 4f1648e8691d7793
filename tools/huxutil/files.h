#pragma once

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "huxread/container.h"
#include "huxread/result.h"
#include "machine/description.h"

// The files that a command line names, and what is read from them.

// The files behind the arguments, in order: a folder stands for the .hux files below it, by name,
// links to folders not followed; "-" and anything else stand for themselves. A folder without any
// is reported on standard error; `code` is raised.
std::vector<std::string> expandFiles(const std::vector<std::string>& arguments, int& code);

// The file, or standard input for "-". Of one that is damaged or was cut off the error says so.
huxread::Result<huxread::Container> openFile(const std::string& path);

// The same of its bytes, which are taken or, when it fails, as they were.
huxread::Result<huxread::Container> openBytes(std::string& bytes);

// Its bytes, whatever they are.
huxread::Result<std::string> readBytes(const std::string& path);

// Its tables.
huxread::Result<machine::Description> describeFile(const std::string& path);

// Runs `work` for 0, 1 ... `count` - 1, on all processors when there are many, and what it returns
// one at a time, in that order. Both run on several threads. At most a few returns wait.
void forEachInOrder(std::size_t count,
                    const std::function<std::function<void()>(std::size_t)>& work);

// What `work` returns; where memory runs out, what `otherwise` does.
template <typename Work, typename Otherwise>
auto whileMemoryLasts(const Work& work, const Otherwise& otherwise) -> decltype(work()) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return otherwise();
  }
}
inline constexpr const char* kNoMemory = "takes more memory than there is";

// What a command makes of one file: parts of standard output and standard error, and an exit code.
struct Outcome {
  std::string output;
  std::string errors;
  int code = 0;
  bool safe = false;  // the output is fit for a terminal already, and may hold styles
};

// Runs `work` for every file, on all processors when there are many, and prints what comes out in
// the order of the files; one that memory does not last for is named. Returns the highest exit
// code. `work` runs on several threads at once.
int forEachFile(const std::vector<std::string>& files,
                const std::function<Outcome(const std::string& path)>& work);
