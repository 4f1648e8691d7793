#include "collect/commandRunner.h"

#include <algorithm>
#include <memory>

namespace {

// Where `count` more bytes can be put, behind those of the text. Its room grows in large steps as
// long as it is not large itself: what is never written to costs nothing, and little has to be
// copied.
char* roomFor(std::size_t count, std::string& text) {
  constexpr std::size_t kStep = 16;
  constexpr std::size_t kLarge = std::size_t{1} << 28;  // bytes
  const std::size_t size = text.size();
  if (text.capacity() - size < count) {
    const std::size_t room = std::max(text.capacity(), count);
    text.reserve(std::max(2 * room, std::min(kStep * room, kLarge)));
  }
  text.resize(size + count);
  return text.data() + size;
}

}  // namespace

std::string runCommand(platform::Host& host, const std::string& command, std::uint32_t& totalLength,
                       std::int32_t chunkSize) {
  totalLength = 0;
  const std::unique_ptr<platform::CommandOutput> output = host.startCommand(command);
  if (output == nullptr) return "";
  const auto size = static_cast<std::size_t>(chunkSize);
  std::string result;
  std::size_t count = 0;
  const auto readMore = [&] {
    const std::size_t before = result.size();
    count = output->read(roomFor(size, result), size);
    result.resize(before + count);
  };
  for (int attempt = 0; attempt < kAttempts && count == 0; ++attempt) readMore();
  while (count == size && !output->atEnd()) readMore();
  // A short text gives its room back. Of a long one that would be a copy, while room that was never
  // written to costs nothing.
  constexpr std::size_t kShort = std::size_t{1} << 20;  // bytes
  if (result.size() < kShort) result.shrink_to_fit();
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
