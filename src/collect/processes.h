#pragma once

#include <optional>
#include <string>

#include "keva/kevaDoc.h"
#include "platform/host.h"

// Writes the processes of the machine into the branch "Processes" of the raw document, each with
// the owner and the command line that the process status tool says. A process that has ended in
// the meantime is left out; the numbers of the entries are places in the kernel's table, and so
// have gaps.
void collectProcesses(platform::Host& host, kevaDoc& raw);

struct ProcessStatus {
  std::string user;
  std::string commandLine;
};

// The output of "ps -pPID -o user= -o command=": the first word, and the rest. Nothing when there
// is no blank.
std::optional<ProcessStatus> parseProcessStatus(const std::string& output);
