#include "output.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "command.h"

namespace {

int writeError = 0;  // of standard output; 0 while there was none

}  // namespace

show::Terminal outputTerminal() {
  winsize window{};
  const bool isTerminal = isatty(STDOUT_FILENO) != 0;
  const bool known = isTerminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0;
  return show::terminalOf(isTerminal, known ? window.ws_col : 0, std::getenv("NO_COLOR"),
                          std::getenv("TERM"));
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

int writeFile(const std::string& path, std::string_view content, bool force) {
  constexpr mode_t kOwnerOnly = 0600;
  const int exists = force ? O_TRUNC : O_EXCL;
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | exists | O_CLOEXEC, kOwnerOnly);
  if (file < 0) {
    printMessage(path, errno == EEXIST ? "is there already; -f replaces it" : std::strerror(errno));
    return kTrouble;
  }
  int error = 0;
  while (!content.empty() && error == 0) {
    const ssize_t written = write(file, content.data(), content.size());
    if (written > 0) {
      content.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      error = errno;
    }
  }
  struct stat status {};
  const bool isPlain = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  if (close(file) != 0 && error == 0) error = errno;
  if (error == 0) return kDone;
  if (isPlain) unlink(path.c_str());  // a device stays
  printMessage(path, std::strerror(error));
  return kTrouble;
}
