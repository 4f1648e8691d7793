#pragma once

#include <string>

#include "command.h"

// What the words of a command line ask for.
struct Request {
  const Command* command = nullptr;  // null: print `text` and end with `code`
  Arguments arguments;
  std::string text;  // help, version or what is wrong
  int code = kDone;
};

Request parseCommandLine(int argc, char** argv);
