#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "support/fileText.h"

struct Outcome {
  int exitCode;  // -1 when it was ended by a signal
  std::string output;
  std::string errors;
};

// What becomes of a shell line. Its output goes through files in the working folder.
inline Outcome outcome(const std::string& line) {
  const int status = std::system(("{ " + line + "; } >out 2>err").c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, fileText("out"), fileText("err")};
}
