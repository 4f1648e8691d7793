// Opens snapshot files: says what a machine is, searches, checks and converts.

#include <csignal>

#include "commandLine.h"
#include "files.h"
#include "output.h"

int main(int argc, char** argv) {
  for (const int signal : {SIGPIPE, SIGXFSZ}) {
    std::signal(signal, SIG_IGN);  // writing meets the error instead
  }
  const Request request = parseCommandLine(argc, argv);
  if (request.command != nullptr) {
    return finishOutput(whileMemoryLasts([&] { return request.command->run(request.arguments); },
                                         [&] {
                                           printMessage(request.command->name, kNoMemory);
                                           return kTrouble;
                                         }));
  }
  if (request.code == kDone) {
    printOutput(request.text);
  } else {
    printErrors(request.text);
  }
  return finishOutput(request.code);
}
