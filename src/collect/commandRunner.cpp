#include "collect/commandRunner.h"

#include <memory>

std::string runCommand(platform::Host& host, const std::string& command, std::uint32_t& totalLength,
                       std::int32_t chunkSize) {
  totalLength = 0;
  const std::unique_ptr<platform::CommandOutput> output = host.startCommand(command);
  if (output == nullptr) return "";
  std::string buffer(static_cast<std::size_t>(chunkSize), '\0');
  std::string result;
  std::size_t count = 0;
  for (int attempt = 0; attempt < kAttempts && count == 0; ++attempt) {
    count = output->read(buffer.data(), buffer.size());
  }
  result.append(buffer, 0, count);
  while (count > 0 && count == buffer.size() && !output->atEnd()) {
    count = output->read(buffer.data(), buffer.size());
    result.append(buffer, 0, count);
  }
  totalLength = static_cast<std::uint32_t>(result.size());
  return result;
}

std::string runCommandUntilItPrints(platform::Host& host, const std::string& command,
                                    std::int32_t chunkSize) {
  std::string output;
  std::uint32_t length = 0;
  for (int attempt = 0; attempt < kAttempts && length == 0; ++attempt) {
    output = runCommand(host, command, length, chunkSize);
  }
  return output;
}
