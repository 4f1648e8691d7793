#include "output.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "command.h"

namespace {

// Of standard output; 0 while there was none. Threads that make output ask for it, too.
std::atomic<int> writeError = 0;

}  // namespace

show::Terminal outputTerminal() {
  winsize window{};
  const bool isTerminal = isatty(STDOUT_FILENO) != 0;
  const bool known = isTerminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0;
  return show::terminalOf(isTerminal, known ? window.ws_col : 0, std::getenv("NO_COLOR"),
                          std::getenv("TERM"));
}

std::size_t widthOf(const show::Terminal& terminal) {
  return static_cast<std::size_t>(terminal.terminal ? terminal.width : INT_MAX);
}

void printOutput(std::string_view text) {
  if (writeError != 0) return;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) writeError = errno;
}

void printBytes(std::string_view bytes) {
  if (outputTerminal().terminal) {
    show::writeSafely(bytes, printOutput);
  } else {
    printOutput(bytes);
  }
}

bool outputGoesOn() {
  return writeError == 0;
}

void flushOutput() {
  if (std::fflush(stdout) != 0 && writeError == 0) writeError = errno;
}

void printErrors(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

std::string message(std::string_view file, std::string_view reason) {
  return "huxutil: " + show::onOneLine(file) + ": " + show::onOneLine(reason) + "\n";
}

void printMessage(std::string_view file, std::string_view reason) {
  printErrors(message(file, reason));
}

int finishOutput(int code) {
  if (std::fclose(stdout) != 0 && writeError == 0) writeError = errno;
  if (writeError == 0 || writeError == EPIPE) return code;
  printMessage("standard output", std::strerror(writeError));
  return kTrouble;
}

namespace {

// 0, or what went wrong.
int writeAll(int file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = write(file, content.data(), content.size());
    if (written < 0 && errno != EINTR) return errno;
    if (written > 0) content.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

int closeAfter(int file, int error) {
  return close(file) != 0 && error == 0 ? errno : error;
}

// Beside the file and then in its place, so that what is there stays until all is written.
int replaceFile(const std::string& path, std::string_view content) {
  std::string beside = path + ".XXXXXX";
  const int file = mkstemp(beside.data());  // mode 0600
  if (file < 0) return errno;
  int error = closeAfter(file, writeAll(file, content));
  if (error == 0 && rename(beside.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) unlink(beside.c_str());
  return error;
}

int createFile(const std::string& path, std::string_view content) {
  constexpr mode_t kOwnerOnly = 0600;
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly);
  if (file < 0) return errno;
  const int error = closeAfter(file, writeAll(file, content));
  if (error != 0) unlink(path.c_str());
  return error;
}

// A pipe, a terminal, a device: nothing is kept there.
int writeInto(const std::string& path, std::string_view content) {
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  return file < 0 ? errno : closeAfter(file, writeAll(file, content));
}

}  // namespace

int writeFile(const std::string& path, std::string_view content, bool force) {
  struct stat status {};
  const bool exists = stat(path.c_str(), &status) == 0;
  int error = 0;
  if (!force) {
    error = createFile(path, content);
  } else if (exists && !S_ISREG(status.st_mode)) {
    error = writeInto(path, content);
  } else {
    error = replaceFile(path, content);
  }
  if (error == 0) return kDone;
  printMessage(path, error == EEXIST ? "is there already; -f replaces it" : std::strerror(error));
  return kTrouble;
}
