// The least that must be done: what measure.py holds the programs against, and the processes that
// it has them list.
//
//   orbex_bench scan XML TEXT      parses a file in place, deflates another one as snapshots are
//   orbex_bench inflate SNAPSHOT   inflates the first section
//   orbex_bench popen COUNT        runs and reads the process status tool so many times
//   orbex_bench sleep COUNT        so many processes, until standard input ends

#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kChunk = 16384;  // bytes
constexpr int kLevel = 9;

std::string fileText(const char* path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  std::string text(static_cast<std::size_t>(file.tellg()), '\0');
  file.seekg(0);
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

Bytef* bytes(std::string_view text) {
  return reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
}

std::size_t deflated(std::string_view text) {
  z_stream stream{};
  deflateInit(&stream, kLevel);
  std::array<char, kChunk> output{};
  for (int flush = Z_NO_FLUSH; flush != Z_FINISH;) {
    const std::string_view chunk = text.substr(0, kChunk);
    text.remove_prefix(chunk.size());
    flush = text.empty() ? Z_FINISH : Z_NO_FLUSH;
    stream.next_in = bytes(chunk);
    stream.avail_in = static_cast<uInt>(chunk.size());
    do {
      stream.next_out = bytes({output.data(), kChunk});
      stream.avail_out = kChunk;
      deflate(&stream, flush);
    } while (stream.avail_out == 0);
  }
  deflateEnd(&stream);
  return stream.total_out;
}

std::size_t inflated(std::string_view file) {
  z_stream stream{};
  inflateInit(&stream);
  std::vector<char> output(kChunk);
  std::string text;
  stream.next_in = bytes(file);
  stream.avail_in = static_cast<uInt>(file.size());
  for (int result = Z_OK; result == Z_OK;) {
    stream.next_out = bytes({output.data(), kChunk});
    stream.avail_out = kChunk;
    result = inflate(&stream, Z_NO_FLUSH);
    text.append(output.data(), kChunk - stream.avail_out);
  }
  inflateEnd(&stream);
  return text.size();
}

std::size_t parsed(std::string& xml) {
  pugi::xml_document tree;
  return tree.load_buffer_inplace(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_utf8)
             ? xml.size()
             : 0;
}

std::size_t readCommands(int count) {
  std::size_t length = 0;
  std::array<char, 500> buffer{};
  for (int i = 0; i < count; ++i) {
    const std::string command = "ps -p" + std::to_string(i) + " -o user=\"\" -o command=\"\"";
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return 0;
    length += std::fread(buffer.data(), 1, buffer.size(), pipe);
    pclose(pipe);
  }
  return length;
}

std::size_t startSleepers(int count) {
  std::signal(SIGCHLD, SIG_IGN);
  std::vector<pid_t> sleepers;
  for (int i = 0; i < count; ++i) {
    const pid_t pid = fork();
    if (pid == 0) {
      pause();
      std::_Exit(0);
    }
    sleepers.push_back(pid);
  }
  std::puts("ready");
  std::fflush(stdout);
  std::getchar();
  for (const pid_t pid : sleepers) kill(pid, SIGKILL);
  return sleepers.size();
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view task = argc > 2 ? argv[1] : "";
  std::size_t result = 0;
  if (task == "scan" && argc > 3) {
    std::string xml = fileText(argv[2]);
    result = parsed(xml) + deflated(fileText(argv[3]));
  } else if (task == "inflate") {
    result = inflated(fileText(argv[2]));
  } else if (task == "popen") {
    result = readCommands(std::atoi(argv[2]));
  } else if (task == "sleep") {
    result = startSleepers(std::atoi(argv[2]));
  }
  return result == 0 ? 1 : 0;
}
