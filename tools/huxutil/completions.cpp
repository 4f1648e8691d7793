#include <algorithm>

#include "command.h"
#include "machine/schema.h"
#include "output.h"

// Scripts for the completion of two shells, made from the table of commands.

namespace {

std::string commandNames() {
  std::string names;
  for (const Command& command : commands()) names += std::string(command.name) + " ";
  names.pop_back();
  return names;
}

std::string optionNames(const Command& command) {
  std::string names;
  for (const Option& option : command.options) names += std::string(option.name) + " ";
  return names + "--help";
}

bool takesFiles(const Command& command) {
  return std::ranges::any_of(command.operands, [](const Operand& operand) {
    return operand.words == Operand::Words::Files;
  });
}

// What can stand as the first operand, when that is one of a few words.
std::string firstWords(const Command& command) {
  if (command.operands.empty()) return "";
  const auto words = command.operands.front().words;
  if (words == Operand::Words::Shells) return "bash zsh";
  std::string names;
  if (words == Operand::Words::Tables) {
    for (const machine::Table& table : machine::kTables) names += std::string(table.name) + " ";
  }
  return names;
}

std::string bashScript() {
  std::string script =
      "# Completion of huxutil for bash. Put it where bash-completion looks, as \"huxutil\".\n"
      "_huxutil() {\n"
      "  local word=${COMP_WORDS[COMP_CWORD]} options=\"\" words=\"\" files=yes reply\n"
      "  case ${COMP_WORDS[1]} in\n";
  for (const Command& command : commands()) {
    script += "    " + std::string(command.name) + ") options=\"" + optionNames(command) +
              "\" words=\"" + firstWords(command) + "\"" +
              (takesFiles(command) ? "" : " files=no") + " ;;\n";
  }
  return script +
         "  esac\n"
         "  case $COMP_CWORD in\n"
         "    1) words=\"" +
         commandNames() +
         "\" options=\"--help --version\" files=yes ;;\n"
         "    2) if [ -n \"$words\" ]; then files=no; fi ;;\n"
         "    *) words=\"\" ;;\n"
         "  esac\n"
         "  case $word in -*) words=$options files=no ;; esac\n"
         "  COMPREPLY=()\n"
         "  while IFS= read -r reply; do COMPREPLY+=(\"$reply\"); done < <(\n"
         "    compgen -W \"$words\" -- \"$word\"\n"
         "    if [ $files = yes ]; then compgen -f -X '!*.hux' -- \"$word\"; compgen -d -- "
         "\"$word\"; fi)\n"
         "}\n"
         "complete -o filenames -F _huxutil huxutil\n";
}

// Within single quotes of a zsh script, where "'" ends them and ":" and "[" structure a
// description.
std::string zshText(std::string_view text) {
  std::string quoted;
  for (const char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else if (c == ':' || c == '[' || c == ']') {
      quoted += std::string("\\") + c;
    } else {
      quoted += c;
    }
  }
  return quoted;
}

std::string zshScript() {
  std::string script =
      "#compdef huxutil\n"
      "# Completion of huxutil for zsh. Put it into a folder of $fpath, as \"_huxutil\".\n"
      "_huxutil() {\n"
      "  local -a commands\n"
      "  commands=(\n";
  for (const Command& command : commands()) {
    script += "    '" + std::string(command.name) + ":" + zshText(command.summary) + "'\n";
  }
  script +=
      "  )\n"
      "  if (( CURRENT == 2 )); then\n"
      "    _describe command commands\n"
      "    _files -g '*.hux'\n"
      "    return\n"
      "  fi\n"
      "  case $words[2] in\n";
  for (const Command& command : commands()) {
    script += "    " + std::string(command.name) + ") _arguments '1: :'";
    for (const Option& option : command.options) {
      script += " '" + std::string(option.name) + "[" + zshText(option.help) + "]";
      if (option.value != nullptr) script += ":" + std::string(option.value) + ":";
      script += "'";
    }
    // The command itself is the first word here.
    if (const std::string words = firstWords(command); !words.empty()) {
      script += " '2:word:(" + words + ")'";
    }
    script += takesFiles(command) ? " '*:file:_files -g \"*.hux\"' ;;\n" : " ;;\n";
  }
  return script +
         "  esac\n"
         "}\n"
         "_huxutil \"$@\"\n";
}

}  // namespace

int runCompletions(const Arguments& arguments) {
  if (arguments.shell == "bash") {
    printOutput(bashScript());
  } else if (arguments.shell == "zsh") {
    printOutput(zshScript());
  } else {
    printMessage(arguments.shell, "there are completions for bash and zsh only");
    return kTrouble;
  }
  return kDone;
}
