#include "collect/processes.h"

#include <cstdint>

#include "base/formatString.h"
#include "base/text.h"
#include "collect/commandRunner.h"

void collectProcesses(platform::Host& host, kevaDoc& raw) {
  constexpr std::int32_t kChunkSize = 500;  // bytes
  int number = 0;
  for (const platform::Process& process : host.processTable()) {
    ++number;
    if (process.pid == 0) continue;
    std::uint32_t length = 0;
    const std::string output =
        runCommand(host, formatString("ps -p%d -o user=\"\" -o command=\"\"", process.pid), length,
                   kChunkSize);
    const std::optional<ProcessStatus> status = parseProcessStatus(output);
    if (!status) continue;
    Tag* tag = raw.top()
                   .child("Processes")
                   ->setChild(formatString("process:%d", number), TagValue(process.name));
    tag->setAttribute("pid", TagValue(std::int64_t{process.pid}));
    tag->setAttribute("ppid", TagValue(std::int64_t{process.ppid}));
    tag->setAttribute("user", TagValue(status->user));
    tag->setAttribute("cmd-line", TagValue(status->commandLine));
  }
}

std::optional<ProcessStatus> parseProcessStatus(const std::string& output) {
  const std::size_t blank = output.find(' ');
  if (blank == std::string::npos) return std::nullopt;
  ProcessStatus status{output.substr(0, blank), output.substr(blank)};
  TrimChars(status.user, " \n\r", kTrimBoth);
  TrimChars(status.commandLine, " \n\r", kTrimBoth);
  return status;
}
