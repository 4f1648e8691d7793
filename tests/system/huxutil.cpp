#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <thread>

#include "huxread/handmade.h"
#include "support/demoMac.h"
#include "support/shell.h"
#include "support/snapshotFile.h"
#include "support/workingFolder.h"

// The real program from outside, on the two files of the recorded Mac and on such as are damaged or
// hostile.

namespace fs = std::filesystem;

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Matcher;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string kHuxutil = "'" HUXUTIL "' ";
// Clears the screen, colours, rings, and turns the direction of the text; in three encodings.
const std::string kHostile = "\33[2J\33[31m\a\x9B\x33m\xC2\x9B\x33m\xE2\x80\xAE";

// Whether something of it, or any other control character, would reach a terminal.
bool steers(const std::string& shown) {
  const bool control = std::ranges::any_of(
      shown, [](unsigned char c) { return (c < 0x20 && c != '\n' && c != '\t') || c == 0x7F; });
  return control || shown.find("\x9B\x33m") != std::string::npos ||
         shown.find("\xE2\x80\xAE") != std::string::npos;
}

void write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string replaced(std::string text, const std::string& before, const std::string& after) {
  const std::size_t at = text.find(before);
  EXPECT_NE(at, std::string::npos) << before;
  return at == std::string::npos ? text : text.replace(at, before.size(), after);
}

std::string snapshotFile(const std::string& text, const std::string& timestamp = "20260101") {
  const std::string data = blob(text);
  return huxFile(
      data, "[H]\ncount=1\nsnapshotcount=1\n[0]\noffset=0\nlength=" + std::to_string(data.size()) +
                "\ntype=snapshot\ntimestamp=" + timestamp + "\n");
}

// Where no file system of pseudo-terminals is mounted, as in some containers.
const std::string kNoTerminal = "no terminal here";

// What reaches a terminal that is standard output and standard error of the shell line.
std::string onTerminal(const std::string& line) {
  const int screen = posix_openpt(O_RDWR | O_NOCTTY);
  if (screen < 0 || grantpt(screen) != 0 || unlockpt(screen) != 0) return kNoTerminal;
  const std::string name = ptsname(screen);
  const int program = open(name.c_str(), O_RDWR | O_NOCTTY);  // the last to close it ends reading
  termios settings{};
  tcgetattr(program, &settings);
  settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);  // no carriage returns
  tcsetattr(program, TCSANOW, &settings);
  std::string shown;
  std::thread reader([&] {
    char part[4096];
    for (ssize_t size; (size = read(screen, part, sizeof part)) > 0;) {
      shown.append(part, static_cast<std::size_t>(size));
    }
  });
  outcome("{ " + line + "; } >'" + name + "' 2>&1");
  close(program);
  reader.join();
  close(screen);
  return shown;
}

class Huxutil : public WorkingFolder {
 protected:
  // To ask for the status of each process takes most of a scan's time.
  Huxutil() { writeScript("bin/ps", ""); }

  static void makeNormal() { outcome(kMac + kAgent + "-silent && mv *.hux normal.hux"); }
  static void makeDebug() { outcome(kMac + kAgent + "-silent -debug && mv MARA*.hux debug.hux"); }

  static Outcome run(const std::string& arguments) { return outcome(kHuxutil + arguments); }

  static void expect(const std::string& arguments, int exitCode, const Matcher<std::string>& output,
                     const Matcher<std::string>& errors = "") {
    const Outcome seen = run(arguments);
    EXPECT_EQ(seen.exitCode, exitCode) << arguments;
    EXPECT_THAT(seen.output, output) << arguments;
    EXPECT_THAT(seen.errors, errors) << arguments;
  }
};

}  // namespace

TEST_F(Huxutil, AnswersFromBothKindsOfFile) {
  makeNormal();
  makeDebug();
  const std::string report = outcome(kMac + "system_profiler -detailLevel full -xml").output;
  const std::string card = run("card debug.hux").output;
  EXPECT_THAT(card, HasSubstr("\nsystem    macOS 10.12.6 (16G29) Sierra"));
  expect("debug.hux", 0, card);
  expect("- <debug.hux", 0, card);
  expect("normal.hux", 0, AllOf(HasSubstr("MacBookPro9,1  DEMO0KESTREL "), Not(HasSubstr("\33"))));
  expect("list normal.hux", 0,
         MatchesRegex("section  type            offset      length  timestamp\n"
                      " +0  snapshot  +0  +[0-9]+  [0-9]+\\.000000[+-][0-9]+\n"
                      " +1  assetinfo  +[0-9]+  +[0-9]+  -\n"));
  expect("text normal.hux", 0, sectionOf("normal.hux", 0));
  expect("text normal.hux 1", 0, sectionOf("normal.hux", 1));
  expect("text normal.hux assetinfo", 0, sectionOf("normal.hux", 1));
  expect("text - customdata <debug.hux", 0, report);
  expect("text normal.hux ''", 1, "", "huxutil: normal.hux: has no section \"\"\n");
  expect("text normal.hux customdata", 1, "",
         "huxutil: normal.hux: has no section \"customdata\"\n");
  expect("raw debug.hux", 0, report);
  expect("raw normal.hux", 1, "",
         "huxutil: normal.hux: no debug file: it holds no document of the profiler\n");
  expect("csv memory normal.hux debug.hux", 0,
         AllOf(StartsWith("file,machine_serial,slot,"),
               HasSubstr("\nnormal.hux,DEMO0KESTREL,BANK 0/DIMM0,true,,8192,DDR3,1600,"),
               HasSubstr("\ndebug.hux,DEMO0KESTREL,BANK 0/DIMM0,true,false,8192,DDR3,1600,")));
  expect("csv processes debug.hux", 0, "file,machine_serial,name,user,pid,ppid,command\n",
         "huxutil: debug.hux: processes: not recorded in this file\n");
  expect("csv walls debug.hux", 2, "",
         StartsWith("huxutil: walls: there is no such table; there are machine memory "));
  expect(
      "get normal.hux machine.memory_mb memory.slot 'disks[halven ssd hx2-500].size_bytes' "
      "'memory[2].size_mb' /OS/os:1/version",
      0, "16384\nBANK 0/DIMM0\nBANK 0/DIMM1\nBANK 1/DIMM0\n500277790720\n4096\n10.12.6 (16G29)\n");
  expect("get debug.hux machine.walls machine.memory_mb /nowhere walls.size processes.pid", 1,
         "16384\n",
         "huxutil: debug.hux: machine.walls: the table machine has no such column\n"
         "huxutil: debug.hux: /nowhere: there is no such path\n"
         "huxutil: debug.hux: walls.size: there is no such table\n"
         "huxutil: debug.hux: processes.pid: not recorded in this file\n");
  expect("find hAlVeN normal.hux debug.hux", 0,
         "normal.hux: disks HALVEN SSD HX2-500: model = HALVEN SSD HX2-500\n"
         "normal.hux: volumes Kestrel HD: disk_model = HALVEN SSD HX2-500\n"
         "debug.hux: disks HALVEN SSD HX2-500: model = HALVEN SSD HX2-500\n"
         "debug.hux: volumes Kestrel HD: disk_model = HALVEN SSD HX2-500\n");
  expect("find SIERRA - <debug.hux", 0, "-: machine: os_marketing_name = Sierra\n");
  expect("find 'no such thing' normal.hux debug.hux", 1, "");
  expect("verify --complete normal.hux debug.hux", 0,
         "normal.hux: no findings\ndebug.hux: no findings\n");
}

TEST_F(Huxutil, WritesOneDocumentOfJsonForEachFile) {
  makeNormal();
  makeDebug();
  const auto single = nlohmann::json::parse(run("json normal.hux").output);
  EXPECT_EQ(single["format"], "hux-json/1");
  EXPECT_EQ(single["tables"]["machine"]["memory_mb"], 16384);
  EXPECT_EQ(single["tables"]["memory"].size(), 4U);
  write("none.hux", "none");
  const Outcome several = run("json normal.hux none.hux debug.hux - normal.hux <debug.hux");
  EXPECT_EQ(several.exitCode, 2);
  EXPECT_EQ(several.errors, "huxutil: none.hux: not a snapshot file: only 4 bytes long\n");
  std::istringstream lines(several.output);
  std::string files;
  for (std::string line; std::getline(lines, line);) {
    const auto document = nlohmann::json::parse(line);
    files += std::string(document["file"]) + " " + std::string(document["source"]) + "\n";
  }
  EXPECT_EQ(files, "normal.hux snapshot\ndebug.hux debug\n- debug\nnormal.hux snapshot\n");
}

TEST_F(Huxutil, WritesTheReportIntoAFileOfItsOwn) {
  makeDebug();
  const std::string report = run("raw debug.hux").output;
  write("there.spx", "there");
  fs::create_directory("folder");
  expect("raw debug.hux -o new.spx", 0, "");
  expect("raw debug.hux -o there.spx", 2, "",
         "huxutil: there.spx: is there already; -f replaces it\n");
  expect("raw -o folder -f debug.hux", 2, "", "huxutil: folder: Is a directory\n");
  expect("raw debug.hux -f -o no/new.spx", 2, "",
         "huxutil: no/new.spx: No such file or directory\n");
  EXPECT_EQ(fileText("new.spx"), report);
  EXPECT_EQ(fs::status("new.spx").permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(fileText("there.spx"), "there");
  expect("raw debug.hux -o there.spx -f", 0, "");
  EXPECT_EQ(fileText("there.spx"), report);
  const Outcome cut =
      outcome("(trap '' XFSZ; ulimit -f 8; " + kHuxutil + "raw debug.hux -o cut.spx)");
  EXPECT_EQ(cut.exitCode, 2);
  EXPECT_EQ(cut.errors, "huxutil: cut.spx: File too large\n");
  EXPECT_FALSE(fs::exists("cut.spx"));
  // What is no plain file is not removed.
  fs::create_symlink("/dev/full", "device");
  if (!fs::exists("device")) return;
  EXPECT_EQ(run("raw debug.hux -f -o device").exitCode, 2);
  EXPECT_TRUE(fs::exists("device"));
}

TEST_F(Huxutil, ExplainsItself) {
  const std::string commands[] = {"card", "list", "text",   "json", "csv",
                                  "get",  "find", "verify", "raw",  "completions"};
  const std::string help = run("--help").output;
  for (const std::string& command : commands) {
    EXPECT_THAT(help, HasSubstr("\n  " + command + " "));
    const Outcome own = run(command + " a b c --help");
    EXPECT_THAT(own.output, StartsWith("Usage: huxutil " + command + " "));
    EXPECT_EQ(own.exitCode, 0) << command;
  }
  expect("--version", 0, MatchesRegex("huxutil [0-9.]+\n"));
  expect("", 2, "", "huxutil: what is to be opened?\nUsage: huxutil FILE, or huxutil --help\n");
  expect("list", 2, "", EndsWith("\nUsage: huxutil list FILE\n"));
  expect("list a b", 2, "", EndsWith("\nUsage: huxutil list FILE\n"));
  expect("text --unknown a", 2, "",
         AllOf(HasSubstr("--unknown"),
               EndsWith("\nUsage: huxutil text [--salvage] FILE [SECTION]\n")));
  expect("get a", 2, "", EndsWith("\nUsage: huxutil get FILE NAME...\n"));
  expect("verify --ignore HUX999 a", 2, "", "huxutil: HUX999: there is no such finding\n");
  for (const char* words : {"diff - -", "report - -", "json - -"}) {
    expect(words, 2, "", StartsWith("huxutil: standard input can be read only once\n"));
  }
  EXPECT_THAT(run("verify --help").output, HasSubstr("\nExit code: 0 done, "));
  EXPECT_THAT(run("diff --help").output, Not(HasSubstr("Exit code: 0 done, ")));
  expect("completions fish", 2, "", "huxutil: fish: there are completions for bash and zsh only\n");
  expect("nowhere.hux", 2, "", "huxutil: nowhere.hux: No such file or directory\n");
  expect("list .", 2, "", "huxutil: .: Is a directory\n");
}

TEST_F(Huxutil, CompletesWordsInBash) {
  if (outcome("command -v bash").exitCode != 0) GTEST_SKIP() << "no bash";
  write("one.hux", "");
  write("other.txt", "");
  fs::create_directory("folder");
  const struct {
    const char* words;
    const char* reply;
  } cases[] = {
      {"ver",                "verify"          },
      {"o",                  "one.hux"         },
      {"--v",                "--version"       },
      {"csv me",             "memory"          },
      {"csv memory fo",      "folder"          },
      {"completions ''",     "bash zsh"        },
      {"text --",            "--salvage --help"},
      {"verify one.hux --c", "--complete"      },
  };
  run("completions bash >bash.sh");
  run("completions zsh >zsh.sh");
  EXPECT_EQ(outcome("if command -v zsh; then zsh -n zsh.sh; else bash -n zsh.sh; fi").exitCode, 0);
  for (const auto& [words, reply] : cases) {
    const Outcome seen = outcome(
        "bash -c '. ./bash.sh; shift; COMP_WORDS=(huxutil \"$@\"); COMP_CWORD=$#; _huxutil; "
        "echo \"${COMPREPLY[*]}\"' sh - " +
        std::string(words));
    EXPECT_EQ(seen.output + seen.errors, std::string(reply) + "\n") << words;
  }
}

TEST_F(Huxutil, TakesAFolderForTheFilesInIt) {
  const std::string file = snapshotFile("\xEF\xBB\xBF?keva\n*Snapshot=\nhostname==1+1\n");
  for (const std::string folder : {"all", "all/a", "all/a/b", "all/z", "empty/below"}) {
    fs::create_directories(folder);
    write(folder + "/2.hux", file);
    write(folder + "/1.hux", file);
    write(folder + "/0.txt", "no snapshot");
  }
  fs::create_directory_symlink("..", "all/z/loop");
  for (const std::string name : {"1.hux", "2.hux"}) fs::remove("empty/below/" + name);
  std::string rows;
  for (const std::string folder : {"all/", "all/a/", "all/a/b/", "all/z/"}) {
    for (const std::string name : {"1.hux", "2.hux"}) {
      rows += folder + name + ": machine: netbios_name = =1+1\n";
    }
  }
  const std::string nothing = "huxutil: empty: no snapshot files (.hux) in this folder\n";
  expect("find 1+1 all", 0, rows);
  expect("find 1+1 empty all/", 2, rows, nothing);
  expect("verify empty", 2, "", nothing);
  expect("csv machine all/z", 0, HasSubstr("\nall/z/2.hux,,,,,'=1+1,"));
}

TEST_F(Huxutil, SaysHowAFileIsDamaged) {
  makeNormal();
  const std::string file = fileText("normal.hux");
  const std::string text = sectionOf("normal.hux", 0);
  const std::string data = blob(text);
  const auto header = [&data](const std::string& type) {
    return "[0]\noffset=0\nlength=" + std::to_string(data.size()) + "\ntype=" + type + "\n";
  };
  write("cut.hux", file.substr(0, file.size() / 2));
  write("changed.hux", std::string(file).replace(file.size() / 2, 4, "\x11\x11\x11\x11"));
  write("header.hux", std::string(file).replace(file.size() - 22, 4, "\x11\x11\x11\x11"));
  write("count.hux", huxFile(data, "[H]\ncount=1\nsnapshotcount=7\n" + header("snapshot")));
  write("unknown.hux",
        huxFile(data + blob("?"), "[H]\ncount=2\nsnapshotcount=1\n" + header("snapshot") +
                                      "[1]\noffset=" + std::to_string(data.size()) + "\nlength=" +
                                      std::to_string(blob("?").size()) + "\ntype=other\n"));
  write("text.hux", snapshotFile(text + "no entry\n"));
  write("neither.hux", fileOfOne("assetinfo", blob("\xEF\xBB\xBF?keva\n*AssetInfo=\n")));
  write("other.hux", fileOfOne("other", blob("?")));
  write("foreign.hux", std::string(500, 'x'));
  write("empty.hux", "");
  const std::string foreign = "huxutil: foreign.hux: not a snapshot file: bad magic\n";
  const std::string half = std::to_string(file.size() / 2);
  expect("verify cut.hux", 1,
         MatchesRegex("cut.hux: HUX001 damage: cut after byte " + half +
                      "; section 0 can be read to line [0-9]+\n"));
  expect("verify changed.hux", 1, StartsWith("changed.hux: HUX003 damage: section 0: "));
  expect("verify header.hux", 1, StartsWith("header.hux: HUX002 damage: header: "));
  expect("verify count.hux", 1, StartsWith("count.hux: HUX002 damage: "));
  expect("verify unknown.hux", 0, "unknown.hux: HUX005 remark: section 1: its type is not known\n");
  expect("verify --ignore HUX005 --ignore HUX001 unknown.hux", 0, "unknown.hux: no findings\n");
  expect("verify text.hux", 1, HasSubstr("text.hux: HUX004 damage: section 0: line "));
  expect("verify neither.hux", 1, StartsWith("neither.hux: HUX006 damage: "));
  write(
      "item.hux",
      fileOfOne("customdata",
                zlibStream("<plist><array><dict><key>_dataType</key><string>SPApplicationsDataType"
                           "</string><key>_items</key><array><dict><key>_name</key><string>&foo;"
                           "</string></dict></array></dict></array></plist>")));
  expect("verify item.hux", 1, StartsWith("item.hux: HUX007 damage: "));
  write("end.hux", fileOfOne("customdata", zlibStream("<plist><array><dict><key>_dataType</key>")));
  expect("verify end.hux", 1, HasSubstr("end.hux: HUX007 damage: "));
  expect("verify other.hux", 1,
         AllOf(HasSubstr("other.hux: HUX005 remark: "), HasSubstr("other.hux: HUX006 damage: ")));
  expect("verify foreign.hux", 2, "", foreign);
  expect("verify empty.hux", 2, "", StartsWith("huxutil: empty.hux: not a snapshot file: "));
  // Of several files each is reported, and the highest exit code counts.
  expect("verify normal.hux foreign.hux neither.hux --ignore HUX006", 2,
         "normal.hux: no findings\nneither.hux: no findings\n", foreign);
  expect("find 10.12.6 normal.hux neither.hux", 2, StartsWith("normal.hux: machine: os_version = "),
         "huxutil: neither.hux: holds neither a snapshot nor a profiler's document\n");
  expect("get unknown.hux machine.os_version", 0, "10.12.6\n");
  expect("text cut.hux", 2, "", StartsWith("huxutil: cut.hux: cut after byte " + half + "; "));
  expect("text --salvage normal.hux", 0, text);
  expect("text --salvage header.hux", 0, text, HasSubstr("section 0 can be read whole"));
  expect("text --salvage foreign.hux", 2, "", foreign);
  expect("list changed.hux", 0, HasSubstr("  snapshot  "));
  expect("text changed.hux", 1, "", StartsWith("huxutil: changed.hux: section 0: "));
  const Outcome salvaged = run("text --salvage cut.hux");
  EXPECT_EQ(salvaged.exitCode, 1);
  EXPECT_TRUE(text.starts_with(salvaged.output));
  EXPECT_GT(salvaged.output.size(), text.size() / 4);
  EXPECT_THAT(salvaged.errors, StartsWith("huxutil: cut.hux: cut after byte " + half + "; "));
}

TEST_F(Huxutil, LetsNoFileSteerTheTerminal) {
  makeNormal();
  makeDebug();
  const std::string text =
      replaced(sectionOf("normal.hux", 0), "MARA-KESTREL", kHostile + "KESTREL");
  const std::string report =
      replaced(sectionOf("debug.hux", 1), "HALVEN SSD", kHostile + "KESTREL");
  write("normal.hux", snapshotFile(text, kHostile + "KESTREL"));
  write("debug.hux", fileOfOne("customdata", zlibStream(report)));
  write("cut.hux", fileText("normal.hux").substr(0, fileText("normal.hux").size() / 2));
  EXPECT_EQ(run("text normal.hux").output, text);
  EXPECT_EQ(run("raw debug.hux").output, report);
  EXPECT_TRUE(nlohmann::json::accept(run("json normal.hux").output));
  const std::string card = onTerminal("TERM=xterm " + kHuxutil + "card normal.hux");
  if (card == kNoTerminal) GTEST_SKIP() << kNoTerminal;
  EXPECT_THAT(card, HasSubstr("\33["));
  const std::string lines[] = {"normal.hux",
                               "card debug.hux",
                               "list normal.hux",
                               "text normal.hux",
                               "text --salvage cut.hux",
                               "raw debug.hux",
                               "json normal.hux",
                               "csv machine normal.hux",
                               "get normal.hux machine.netbios_name",
                               "get normal.hux /hostname",
                               "find kestrel normal.hux",
                               "verify normal.hux debug.hux cut.hux '" + kHostile + "KESTREL'",
                               "text normal.hux '" + kHostile + "KESTREL'",
                               "get normal.hux '" + kHostile + "KESTREL'",
                               "list a --'" + kHostile + "KESTREL'"};
  for (const std::string& line : lines) {
    const std::string shown = onTerminal("NO_COLOR=1 TERM=xterm " + kHuxutil + line);
    EXPECT_THAT(shown, HasSubstr("KESTREL")) << line;
    EXPECT_FALSE(steers(shown)) << line << "\n" << shown;
  }
}

TEST_F(Huxutil, MindsAFullDiskButNoReaderThatLeft) {
  write("big.hux", fileOfOne("customdata", zlibStream(std::string(5000000, 'x'))));
  const Outcome left = outcome("{ " + kHuxutil + "raw big.hux; echo $? >&2; } | head -c 3");
  EXPECT_EQ(left.output, "xxx");
  EXPECT_EQ(left.errors, "0\n");
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no device that is always full";
  expect("raw big.hux >/dev/full", 2, "", "huxutil: standard output: No space left on device\n");
  expect("--help >/dev/full", 2, "", "huxutil: standard output: No space left on device\n");
}
