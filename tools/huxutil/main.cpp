#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/formatString.h"
#include "huxread/container.h"

namespace {

using huxread::Container;
using huxread::Error;
using huxread::Result;
using huxread::Section;

constexpr int kSuccess = 0;
constexpr int kFailure = 2;

constexpr const char* kUsage =
    "Usage: huxutil list FILE\n"
    "       huxutil text FILE [SECTION]\n"
    "       huxutil --help\n";

constexpr const char* kHelp =
    "\n"
    "Looks into snapshot files (.hux).\n"
    "\n"
    "  list   prints a table of the sections of FILE: number, type, offset and length\n"
    "         in bytes, time stamp (\"-\" where there is none)\n"
    "  text   prints the text of one section, byte for byte as it was before it was\n"
    "         compressed. SECTION is a number or a type of that table (\"1\",\n"
    "         \"assetinfo\"; the first of its type); without it the first section is\n"
    "         taken, the inventory of a usual file\n"
    "\n"
    "Exit code: 0 when everything was printed, 2 otherwise.\n";

// Prints to standard output and closes it, so that no write error goes unnoticed. A reader that
// went away (a pager, head) has had enough, that is no error.
int print(std::string_view text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  const int writeError = errno;
  const bool closed = std::fclose(stdout) == 0;
  const int error = written ? errno : writeError;
  if ((written && closed) || error == EPIPE) return kSuccess;
  std::fprintf(stderr, "huxutil: standard output: %s\n", std::strerror(error));
  return kFailure;
}

// A text of a file, safe for a terminal: control characters and all beyond ASCII become "?".
std::string printable(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return c < ' ' || c > '~'; }, '?');
  return text;
}

Result<std::string> listSections(const Container& container) {
  std::string table = formatString("%7s  %-10s  %10s  %10s  %s\n", "section", "type", "offset",
                                   "length", "timestamp");
  for (const Section& section : container.sections()) {
    const std::string timestamp = section.timestamp.empty() ? "-" : printable(section.timestamp);
    table += formatString("%7u  %-10s  %10u  %10u  %s\n", section.number, typeName(section.type),
                          section.offset, section.length, timestamp.c_str());
  }
  return table;
}

// The text of the first section that `wanted` is the number or the type of, of the first of all
// when nothing is wanted.
Result<std::string> sectionText(const Container& container,
                                const std::optional<std::string>& wanted) {
  for (const Section& section : container.sections()) {
    if (!wanted || *wanted == std::to_string(section.number) || *wanted == typeName(section.type)) {
      return container.text(section.number);
    }
  }
  return Error{wanted ? "has no section " + *wanted : "has no sections"};
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // print meets the error instead
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  const auto asksForHelp = [](const std::string& text) { return text == "--help" || text == "-h"; };
  if (std::ranges::any_of(arguments, asksForHelp)) return print(std::string(kUsage) + kHelp);

  const std::string command = arguments.empty() ? "" : arguments[0];
  const bool list = command == "list" && arguments.size() == 2;
  const bool text = command == "text" && (arguments.size() == 2 || arguments.size() == 3);
  if (!list && !text) {
    std::fputs(kUsage, stderr);
    return kFailure;
  }
  const std::string& path = arguments[1];
  const Result<Container> container = Container::open(path);
  const auto section = arguments.size() == 3 ? std::optional(arguments[2]) : std::nullopt;
  const Result<std::string> output = !container ? container.error()
                                     : list     ? listSections(*container)
                                                : sectionText(*container, section);
  if (output) return print(*output);
  std::fprintf(stderr, "huxutil: %s: %s\n", path.c_str(), output.error().message.c_str());
  return kFailure;
}
