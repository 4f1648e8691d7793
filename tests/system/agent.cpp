#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/demoMac.h"
#include "support/shell.h"
#include "support/snapshotFile.h"
#include "support/workingFolder.h"

// The real program from outside, on the recorded Mac.

namespace fs = std::filesystem;

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

const std::string kPrompt =
    "Orbex scanner for MacOS X (version 17.05.24)\n"
    "Do you want to start the scan of local computer?(y/n)\n";

class Agent : public WorkingFolder {
 protected:
  // To ask for the status of each process takes most of a scan's time.
  Agent() { writeScript("bin/ps", ""); }

  // The path of the one snapshot here, which must have that address: the name before it is this
  // machine's own.
  std::string snapshot(const std::string& address) const {
    std::string found;
    for (const auto& entry : fs::directory_iterator(".")) {
      if (entry.path().extension() == ".hux") found += entry.path().filename();
    }
    EXPECT_TRUE(found.ends_with("_" + address + ".hux")) << found;
    return pathOf(found);
  }
};

std::string phaseLog(const std::string& percentages, const std::string& saved) {
  std::string log =
      "Agent version: 17.05.24\n------Start Log------\nI. Collecting Data....\n" + percentages +
      "done\nII. Parsing Data....done\nIII. Get Data For AssetInfo....33% 66% 100% done\n"
      "IV. PostProcess>>>\n";
  for (int step = 1; step <= 15; ++step) log += std::to_string(step) + "...done\n";
  return log +
         "IV. PostProcess End.\nV. Creating AssetInfo Section....done\n"
         "VI. Generating File name....done\nVII. Saving to file...." +
         saved + "done\n------End Log------\n";
}

}  // namespace

TEST_F(Agent, ScansOnlyWhenToldTo) {
  const std::string canceled = "Scan canceled.\n";
  const std::string incorrect = "Incorrect input. Application terminated.\n";
  const std::string tooLong(500, 'y');
  const struct {
    std::string input;
    std::string answer;
    int exitCode;
  } cases[] = {
      {"n\n",      canceled,  0},
      {" \n\tn y", canceled,  0},
      {"Y\n",      incorrect, 1},
      {"",         incorrect, 1},
      {tooLong,    incorrect, 1},
  };
  for (const auto& [input, answer, exitCode] : cases) {
    std::ofstream("in") << input;
    const Outcome run = outcome(kAgent + "-log unknown /SILENT -Silent -silent! <in");
    EXPECT_EQ(run.output, kPrompt + answer) << input;
    EXPECT_EQ(run.exitCode, exitCode) << input;
  }
  const Outcome named = outcome("echo n | bash -c \"exec -a --help " + kAgent + "\"");
  EXPECT_EQ(named.output, kPrompt + canceled) << "what it is called by is no option";
}

TEST_F(Agent, ExplainsItself) {
  const std::string help = outcome(kAgent + "--help").output;
  EXPECT_THAT(
      help,
      HasSubstr(
          "\nOrbex's Mac OS X Agent\nUsage: orbexagent [OPTION...]\n"
          "-ip:[ipaddr],\t\t/ip:[ipaddr]\t\tSet Current IP Address\n"
          "--help,\t\t\t-?\t\t\tShow this help message\n"
          "-debug,\t\t\t/debug\t\t\tSave offline scan result in raw format to send to support\n"
          "-silent,\t\t/silent\t\t\tStart offline scan without output to console\n"
          "\n\nFor additional information contact us: support@orbex.example\n"
          "Visit our site: https://www.orbex.example https://forum.orbex.example\n"));
  const Outcome run = outcome(kAgent + "-log -ip: -silent '-?' -debug");
  EXPECT_EQ(run.output, help);
  EXPECT_EQ(run.exitCode, 0);
}

TEST_F(Agent, ScansTheConnectionThatItIsGiven) {
  const Outcome run = outcome("echo y | " + kMac + kAgent +
                              "-ip:192.0.2.17 /ip:198.51.100.42 -login:a -login:b:c -LOG /Debug");
  const std::string file = snapshot("00005E0053A1");
  EXPECT_EQ(run.output,
            kPrompt + "Scan started...\n\nScan finished. Results saved to file \"" + file + "\"\n");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(sectionOf(file, 0), HasSubstr("\nip-address=198.51.100.42\n"));
  EXPECT_THAT(sectionOf(file, 1), HasSubstr("\nlogin=b:c\n"));
}

// Whoever plays a recording may show the snapshot around.
TEST_F(Agent, SaysOfThisMachineNothingButItsName) {
  fs::remove("bin/ps");
  // The ":" keeps the shell, and with it the planted name, until the scan has ended.
  writeScript("bin/planted-name", kMac + kAgent + "-silent\n:\n");
  outcome("PLANTED=planted-value PATH=$PWD/bin:$PATH:/planted planted-name planted-argument");
  const std::string file = snapshot("00005E0053A0");
  for (const std::uint32_t section : {0U, 1U}) {
    EXPECT_THAT(sectionOf(file, section), Not(HasSubstr("planted")));
    EXPECT_THAT(sectionOf(file, section), Not(HasSubstr(fs::current_path().string())));
  }
  EXPECT_THAT(sectionOf(file, 0), HasSubstr("\nuser=_windowserver\ncmd-line=/System/Library/"));
  EXPECT_THAT(sectionOf(file, 0), HasSubstr("\n*env-var:HOME=HOME\nvalue=/Users/mara\n"));
}

TEST_F(Agent, LogsItsPhases) {
  const Outcome run = outcome("echo y | " + kMac + kAgent + "-log");
  const std::string file = snapshot("00005E0053A0");
  EXPECT_EQ(run.output,
            kPrompt + "Scan started...\n" +
                phaseLog("", "\nScan finished. Results saved to file \"" + file + "\"\n"));
}

TEST_F(Agent, SavesWhatTheProfilerSaysForSupport) {
  const std::string file = pathOf("MARA-KESTREL_00005E0053A0.hux");
  EXPECT_EQ(outcome(kMac + kAgent + "/debug /silent -log").output, ">>>" + file + "\n");
  EXPECT_EQ(sectionOf(file, 1), outcome(kMac + "system_profiler -detailLevel full -xml").output);
  EXPECT_THAT(sectionOf(file, 0), EndsWith("\nerror-message=Debug scan\n"));
}

TEST_F(Agent, SaysWhenTheFileCannotBeCreated) {
  const std::string file = pathOf("MARA-KESTREL_00005E0053A0.hux");
  const std::string leave = "mkdir -p gone; cd gone; rmdir ../gone; ";
  const Outcome run = outcome(leave + "echo y | " + kMac + kAgent + "-debug");
  EXPECT_EQ(run.output, kPrompt + "Scan started...\n");
  EXPECT_THAT(run.errors, EndsWith("Cannot create file :./MARA-KESTREL_00005E0053A0.hux\n"));
  EXPECT_EQ(run.exitCode, 0);
  // Also where it can be created and not written to its end.
  const Outcome cut = outcome("echo y | " + kMac + "sh -c 'ulimit -f 8; \"$0\" -debug' " + kAgent);
  EXPECT_THAT(cut.errors, EndsWith("Cannot create file :" + file + "\n"));
  EXPECT_FALSE(fs::exists(file));
  const Outcome silent = outcome(leave + kMac + kAgent + "-silent -debug");
  EXPECT_EQ(silent.output, "");
  EXPECT_THAT(silent.errors, Not(HasSubstr("Cannot create file")));
}

// Commands must not inherit that the agent survives a broken pipe.
TEST_F(Agent, OutlivesItsReader) {
  writeScript("bin/env", "echo BEFORE=1; kill -PIPE $$; echo AFTER=1\n");
  outcome(kMac + kAgent + "-silent -log | true");
  const std::string text = sectionOf(snapshot("00005E0053A0"), 0);
  EXPECT_THAT(text, HasSubstr("\n*env-var:BEFORE=BEFORE\n"));
  EXPECT_THAT(text, Not(HasSubstr("AFTER")));
}

TEST_F(Agent, AsksTheMachineInOrder) {
  writeScript("bin/ps", "echo ps >>calls; cat >>heard\n");
  for (const std::string name : {"system_profiler", "ioreg", "diskutil", "ls", "dscl", "env"}) {
    writeScript("bin/" + name,
                "echo " + name + " >>calls\nPATH=${PATH#*:}\nexec " + name + " \"$@\"\n");
  }
  const Outcome run = outcome("echo y | " + kMac + kAgent + "/log /silent");
  EXPECT_EQ(run.output, phaseLog("10%\n20%\n30%\n40%\n50%\n60%\n70%\n80%\n90%\n100%\n",
                                 ">>>" + snapshot("00005E0053A0") + "\n"));
  EXPECT_EQ(fileText("heard"), "");  // of what nobody answered
  EXPECT_EQ(outcome("uniq calls").output, "system_profiler\nioreg\nps\ndiskutil\nls\ndscl\nenv\n");
}

TEST_F(Agent, HandsNoUsersNameToTheShell) {
  fs::create_directories("mac");
  fs::copy(PROJECT_FOLDER "/demo/mac/dscl", "mac/dscl");
  std::ofstream("mac/users.txt") << "$(touch owned)\n`touch owned`\na\";touch owned;\"\nmara\n";
  outcome(playing("mac") + kAgent + "-silent");
  EXPECT_FALSE(fs::exists("owned"));
  EXPECT_THAT(sectionOf(snapshot(""), 0), HasSubstr("\n*usr-acc:mara=mara\n"));
}
