#include "collect/commandRunner.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

// Bytes whose number is not known before. Unlike a std::string it grows without being copied: the
// system moves the pages of a large one.
class Bytes {
 public:
  Bytes() = default;
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  ~Bytes() { std::free(data_); }  // NOLINT(cppcoreguidelines-no-malloc)

  // Where `count` more bytes can be put, behind those that are there.
  char* room(std::size_t count) {
    if (room_ - size_ < count) {
      room_ = std::max(2 * room_, size_ + count);
      void* data = std::realloc(data_, room_);  // NOLINT(cppcoreguidelines-no-malloc)
      if (data == nullptr) throw std::bad_alloc();
      data_ = static_cast<char*>(data);
    }
    return data_ + size_;
  }

  // So many were put there.
  void add(std::size_t count) { size_ += count; }

  std::string text() const { return size_ == 0 ? "" : std::string(data_, size_); }

 private:
  char* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t room_ = 0;
};

}  // namespace

std::string runCommand(platform::Host& host, const std::string& command, std::uint32_t& totalLength,
                       std::int32_t chunkSize) {
  totalLength = 0;
  const std::unique_ptr<platform::CommandOutput> output = host.startCommand(command);
  if (output == nullptr) return "";
  const auto size = static_cast<std::size_t>(chunkSize);
  Bytes bytes;
  std::size_t count = 0;
  for (int attempt = 0; attempt < kAttempts && count == 0; ++attempt) {
    count = output->read(bytes.room(size), size);
  }
  bytes.add(count);
  while (count == size && !output->atEnd()) {
    count = output->read(bytes.room(size), size);
    bytes.add(count);
  }
  std::string result = bytes.text();
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
