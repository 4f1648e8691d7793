#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "huxread/document.h"
#include "support/demoMac.h"
#include "support/shell.h"
#include "support/snapshotFile.h"
#include "support/workingFolder.h"

// All faults, as scripts/faults wants them; else a part of them, for ./check.
inline const bool kThorough = std::getenv("ORBEX_FAULTS") != nullptr;

// What a snapshot says, a text for each entry of its documents, sorted. Entries that are numbered
// lose their numbers, which are others when one before them is missing.
using Entries = std::vector<std::string>;

inline Entries missing(const Entries& expected, const Entries& found) {
  Entries missing;
  std::ranges::set_difference(expected, found, std::back_inserter(missing));
  return missing;
}

// The agent with tools that answer what the recorded Mac answers, from files: each can be made to
// answer something else. A command is known by its tool and its last word: "dscl.mara".
class Tools : public WorkingFolder {
 protected:
  // Whatever command the agent runs on the recorded Mac is in answers() afterwards.
  Tools() {
    std::signal(SIGINT, SIG_DFL);  // a shell lets what it starts in the background ignore it
    const std::string name =
        "for last; do :; done; case ${0##*/} in ps) last=$1 ;; esac\n"
        "answer='" +
        pathOf("answers") + "'/${0##*/}.${last##*/}\n";
    std::filesystem::create_directory("answers");
    replaceTools(name + "PATH=${PATH#*:}; ${0##*/} \"$@\" | tee \"$answer\"\n");
    writeScript("bin/ps", "");
    outcome(kMac + kAgent + "-silent; rm -f *.hux");
    for (const auto& answer : std::filesystem::directory_iterator("answers")) {
      answers_[answer.path().filename()] = fileText(answer);
    }
    answers_["ps.-p1"] = "root /sbin/launchd\n";  // every machine has that process
    for (const auto& [command, text] : answers_) answer(command, text);
    replaceTools(name +
                 "[ -f \"$answer\" ] || exit 1; [ -f \"$answer.end\" ] || exec cat \"$answer\"\n"
                 "cat \"$answer\"; . \"$answer.end\"\n");
    outcome("ln -s $(command -v awk) $(command -v cat) bin/");  // all else is not found
    alone_ = outcome(
                 "unshare --map-root-user --pid --fork --mount-proc true && "
                 "printf '%s --map-root-user --pid --fork --mount-proc ' $(command -v unshare)")
                 .output;
  }

  const std::map<std::string, std::string>& answers() const { return answers_; }

  // From now on a command prints that, and then does what a shell line says.
  void answer(const std::string& command, const std::string& text,
              const std::string& end = "") const {
    const std::string file = pathOf("answers/" + command);
    std::ofstream(file, std::ios::binary) << text;
    std::filesystem::remove(file + ".end");
    if (!end.empty()) std::ofstream(file + ".end") << end << "\n";
  }

  // A shell line that becomes the agent. Where the system lets us, it sees no other processes, each
  // of which costs a command.
  std::string agent(const std::string& options = "-silent") const {
    return "PATH='" + pathOf("bin") + "' exec " + alone_ + kAgent + options;
  }

  // The same among all processes, so that a signal reaches it.
  std::string plainAgent() const {
    return "PATH='" + pathOf("bin") + "' exec " + kAgent + "-silent";
  }

  // Scans, and takes the one snapshot of it.
  Entries scan() const {
    EXPECT_EQ(outcome(agent()).exitCode, 0);
    const std::vector<Entries> snapshots = takeSnapshots();
    EXPECT_EQ(snapshots.size(), 1U);
    return snapshots.empty() ? Entries() : snapshots[0];
  }

  // Reads all snapshots here and removes them. The test fails when one is not whole.
  static std::vector<Entries> takeSnapshots() {
    std::vector<Entries> snapshots;
    for (const std::string& file : snapshotFiles()) {
      snapshots.push_back(read(file));
      std::filesystem::remove(file);
    }
    return snapshots;
  }

  static std::vector<std::string> snapshotFiles() {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
      if (entry.path().extension() == ".hux") found.push_back(entry.path().filename());
    }
    return found;
  }

  static Entries read(const std::string& file) {
    EXPECT_EQ(outcome("'" HUXUTIL "' verify '" + file + "'").exitCode, 0);
    Entries entries;
    for (const std::uint32_t section : {0U, 1U}) {
      const auto document = huxread::Document::parse(sectionOf(file, section));
      EXPECT_TRUE(document) << file;
      if (document) collect(*document->top(), "", entries);
    }
    std::ranges::sort(entries);
    return entries;
  }

 private:
  static void replaceTools(const std::string& script) {
    for (const auto& tool : std::filesystem::directory_iterator(PROJECT_FOLDER "/demo/bin")) {
      writeScript("bin/" + tool.path().filename().string(), script);
    }
  }

  static void collect(const huxread::TagView& tag, std::string path, Entries& entries) {
    const std::string name(tag.name());
    path += "/" + name.substr(0, name.find_last_not_of("0123456789") + 1);
    entries.push_back(path + "=" + std::string(tag.value()));
    for (const auto& [key, value, properties] : tag.attributes()) {
      if (key == "scan-time" || value.find(".000000") != value.npos) continue;  // time stamps
      entries.push_back(path + "/" + std::string(key) + "=" + std::string(value));
    }
    for (auto child = tag.firstChild(); child; child = child->nextSibling()) {
      collect(*child, path, entries);
    }
  }

  std::map<std::string, std::string> answers_;
  std::string alone_;  // the beginning of a command
};
