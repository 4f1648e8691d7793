// The agent: reads its options, asks whether to scan, and scans once.

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "platform/host.h"
#include "run/scanRun.h"

namespace {

// Live as long as the process. `reservedText` belongs to the set and is used by nothing.
std::string currentIpAddress;
std::string loginName;
[[maybe_unused]] std::string reservedText;

std::uint8_t containerOption = 1;
std::uint8_t debugMode = 0;
std::uint8_t logMode = 0;

void printHelp() {
  constexpr const char* kLines[] = {
      "Orbex, hardware and software inventory\n",
      "Orbex's Mac OS X Agent\n",
      "Usage: orbexagent [OPTION...]\n",
      "-ip:[ipaddr],\t\t/ip:[ipaddr]\t\tSet Current IP Address\n",
      "--help,\t\t\t-?\t\t\tShow this help message\n",
      "-debug,\t\t\t/debug\t\t\tSave offline scan result in raw format to send to support\n",
      "-silent,\t\t/silent\t\t\tStart offline scan without output to console\n",
      "\n",
      "\n",
      "For additional information contact us: support@orbex.example\n",
      "Visit our site: https://www.orbex.example https://forum.orbex.example\n",
  };
  for (const char* line : kLines) std::fputs(line, stdout);
}

// An option is known with a "-" or a "/" before it.
bool isOption(std::string_view argument, std::string_view name) {
  return !argument.empty() && (argument.front() == '-' || argument.front() == '/') &&
         argument.substr(1) == name;
}

bool hasPrefix(std::string_view argument, std::string_view prefix) {
  return isOption(argument.substr(0, prefix.size() + 1), prefix);
}

struct CommandLine {
  bool help = false;
  bool silent = false;
};

// Takes the options one by one; what stands behind a request for help is not looked at, and what is
// no option is passed over.
CommandLine parseOptions(int argc, char** argv) {
  constexpr std::string_view kIp = "ip:";
  constexpr std::string_view kLogin = "login:";
  CommandLine line;
  containerOption = 1;
  for (int i = 1; i < argc && !line.help; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "-?" || argument == "--help") {
      line.help = true;
    } else if (isOption(argument, "silent")) {
      // Standard output stays: it tells the program that watches a silent run.
      [[maybe_unused]] const std::FILE* in = std::freopen("/dev/null", "r", stdin);
      [[maybe_unused]] const std::FILE* err = std::freopen("/dev/null", "w", stderr);
      line.silent = true;
    } else if (hasPrefix(argument, kIp)) {
      currentIpAddress = argument.substr(kIp.size() + 1);
    } else if (isOption(argument, "log")) {
      logMode = 1;
    } else if (hasPrefix(argument, kLogin)) {
      loginName = argument.substr(kLogin.size() + 1);
    } else if (isOption(argument, "debug")) {
      debugMode = 1;
    }
  }
  return line;
}

enum class Answer { Yes, No, Other };

Answer askToScan() {
  std::printf(
      "Orbex scanner for MacOS X (version %s)\n"
      "Do you want to start the scan of local computer?(y/n)\n",
      kProgramVersion);
  char word[128] = "";  // a longer one is cut, and then is no answer
  if (std::scanf("%127s", word) != 1) return Answer::Other;
  if (std::string_view(word) == "y") return Answer::Yes;
  return std::string_view(word) == "n" ? Answer::No : Answer::Other;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader of standard output that goes away must not cost the snapshot, and a limit on the size
  // of files is an error like a full disk. A handler, unlike ignoring the signals, is not handed on
  // to the commands that a scan starts.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, [](int) {});

  const CommandLine line = parseOptions(argc, argv);
  if (line.help) {
    printHelp();
    return 0;
  }
  if (!line.silent) {
    switch (askToScan()) {
      case Answer::Yes:
        std::puts("Scan started...");
        break;
      case Answer::No:
        std::puts("Scan canceled.");
        return 0;
      case Answer::Other:
        std::puts("Incorrect input. Application terminated.");
        return 1;
    }
  }
  const std::unique_ptr<platform::Host> host = platform::makeHost();
  const auto options = std::make_unique<RunOptions>(RunOptions{containerOption, 0, logMode});
  scanRun(*host, *options, line.silent, debugMode != 0, currentIpAddress, loginName);
  return 0;
}
