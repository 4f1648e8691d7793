#include "platform/shellCommand.h"

#include <cstdio>

namespace platform {

namespace {

class PipedOutput : public CommandOutput {
 public:
  explicit PipedOutput(std::FILE* pipe) : pipe_(pipe) {}
  PipedOutput(const PipedOutput&) = delete;
  PipedOutput& operator=(const PipedOutput&) = delete;
  ~PipedOutput() override { pclose(pipe_); }

  std::size_t read(char* buffer, std::size_t size) override {
    return std::fread(buffer, 1, size, pipe_);
  }

  bool atEnd() const override { return std::feof(pipe_) != 0; }

 private:
  std::FILE* pipe_;
};

}  // namespace

std::unique_ptr<CommandOutput> startShellCommand(const std::string& command) {
  std::FILE* pipe = popen(command.c_str(), "r");
  return pipe == nullptr ? nullptr : std::make_unique<PipedOutput>(pipe);
}

}  // namespace platform
