#include "commandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <sstream>
#include <type_traits>

#include "base/text.h"
#include "show/terminal.h"

namespace {

constexpr const char* kIntroduction =
    "Opens snapshot files (.hux) of orbexagent.\n"
    "\n"
    "  huxutil FILE                  one screen about the machine\n"
    "  huxutil COMMAND --help        more about a command\n";
constexpr const char* kExitCodes =
    "Exit code: 0 done, found, valid; 1 not found, damaged or incomplete; 2 wrong usage, "
    "unreadable\n"
    "or no snapshot file. Of several files the highest counts.\n";

// "FILE..." and "[SECTION]" without their marks.
std::string plainName(std::string name) {
  std::erase_if(name, [](char c) { return c == '.' || c == '[' || c == ']'; });
  return name;
}

void addOperand(CLI::App& app, const Operand& operand, Arguments& arguments) {
  const std::string name = plainName(operand.name);
  CLI::Option* option =
      std::visit([&](auto member) { return app.add_option(name, arguments.*member, operand.help); },
                 operand.target);
  option->type_name("")->required(!std::string_view(operand.name).starts_with('['));
}

void addOption(CLI::App& app, const Option& option, Arguments& arguments) {
  if (const auto* flag = std::get_if<bool Arguments::*>(&option.target)) {
    app.add_flag(option.name, arguments.**flag, option.help);
  } else if (const auto* text = std::get_if<std::string Arguments::*>(&option.target)) {
    app.add_option(option.name, arguments.**text, option.help)->type_name(option.value);
  } else if (const auto* list =
                 std::get_if<std::vector<std::string> Arguments::*>(&option.target)) {
    app.add_option(option.name, arguments.**list, option.help)
        ->type_name(option.value)
        ->expected(1)
        ->allow_extra_args(false)  // a file may follow
        ->take_all();
  }
}

// "huxutil text [--salvage] FILE [SECTION]"
std::string usageOf(const Command& command) {
  std::string usage = "huxutil " + std::string(command.name);
  for (const Option& option : command.options) {
    usage += " [" + std::string(option.name);
    if (option.value != nullptr) usage += " " + std::string(option.value);
    usage += "]";
  }
  for (const Operand& operand : command.operands) usage += " " + std::string(operand.name);
  return usage;
}

std::string helpOf(const Command& command) {
  const auto line = [](std::string left, const char* help) {
    left.resize(std::max<std::size_t>(left.size(), 16), ' ');
    return "  " + left + "  " + help + "\n";
  };
  const std::string_view details = command.details == nullptr ? "" : command.details;
  const std::string_view summary = command.summary;
  std::string help = "Usage: " + usageOf(command) + "\n\n" + toUpper(summary.substr(0, 1)) +
                     std::string(summary.substr(1)) + ".\n";
  if (!details.empty()) help += std::string(details) + "\n";
  help += "\n";
  for (const Operand& operand : command.operands) help += line(operand.name, operand.help);
  for (const Option& option : command.options) {
    const bool hasValue = option.value != nullptr;
    help += line(std::string(option.name) + (hasValue ? " " + std::string(option.value) : ""),
                 option.help);
  }
  const bool hasOwnCodes = details.find("Exit code:") != std::string_view::npos;
  return hasOwnCodes ? help : help + "\n" + kExitCodes;
}

std::string generalHelp() {
  std::string help = "Usage: huxutil COMMAND ...\n\n" + std::string(kIntroduction) + "\n";
  for (const Command& command : commands()) {
    constexpr std::size_t kWidth = 30;
    std::string usage = usageOf(command).substr(std::strlen("huxutil "));
    if (usage.size() > kWidth) usage += "\n" + std::string(2, ' ');
    const std::size_t line = usage.rfind('\n') + 1;  // 0 without one
    usage.resize(std::max(usage.size(), line + kWidth + (line == 0 ? 0 : 2)), ' ');
    help += "  " + usage + "  " + command.summary + "\n";
  }
  return help + "\n  --version\n\n" + kExitCodes;
}

bool asksForHelp(std::string_view word) {
  return word == "--help" || word == "-h";
}

const Command* findCommand(std::string_view name) {
  const auto found = std::ranges::find_if(
      commands(), [name](const Command& command) { return command.name == name; });
  return found == commands().end() ? nullptr : &*found;
}

Request wrongUsage(const std::string& what, const std::string& usage) {
  Request request;
  request.text = "huxutil: " + show::onOneLine(what) + "\nUsage: " + usage + "\n";
  request.code = kTrouble;
  return request;
}

}  // namespace

Request parseCommandLine(int argc, char** argv) {
  const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  Request request;
  if (words.empty()) return wrongUsage("what is to be opened?", "huxutil FILE, or huxutil --help");
  if (asksForHelp(words[0])) {
    request.text = generalHelp();
    return request;
  }
  if (words[0] == "--version") {
    request.text = "huxutil " HUXUTIL_VERSION "\n";
    return request;
  }
  // A file that is called like a command is opened as "./list".
  const Command* named = findCommand(words[0]);
  if (named == nullptr && (words.size() > 1 || (words[0].starts_with('-') && words[0] != "-")) &&
      std::ranges::none_of(words, asksForHelp)) {
    return wrongUsage("\"" + words[0] + "\" is no command", "huxutil FILE, or huxutil --help");
  }
  const Command& command = named == nullptr ? *findCommand("card") : *named;
  CLI::App app;
  app.set_help_flag();
  for (const Operand& operand : command.operands) addOperand(app, operand, request.arguments);
  for (const Option& option : command.options) addOption(app, option, request.arguments);
  if (std::ranges::any_of(words, asksForHelp)) {
    request.text = helpOf(command);
    return request;
  }
  // CLI11 takes the words from the end.
  std::vector<std::string> rest(words.rbegin(), words.rend() - (named == nullptr ? 0 : 1));
  try {
    app.parse(rest);
  } catch (const CLI::ParseError& error) {
    return wrongUsage(error.what(), usageOf(command));
  }
  const auto isInput = [](const std::string& path) { return path == "-"; };
  const Arguments& given = request.arguments;
  if (std::ranges::count_if(given.files, isInput) + (isInput(given.file) ? 1 : 0) +
          (isInput(given.later.value_or("")) ? 1 : 0) >
      1) {
    return wrongUsage("standard input can be read only once", usageOf(command));
  }
  request.command = &command;
  return request;
}
