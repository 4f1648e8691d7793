#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "huxread/handmade.h"
#include "support/demoMac.h"
#include "support/shell.h"
#include "support/workingFolder.h"

// huxutil load, sql and fleet from outside.

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Matcher;
using testing::StartsWith;

namespace {

const std::string kHuxutil = "'" HUXUTIL "' ";

void write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// A machine with that serial number and an application, scanned on that day of May 2026.
void writeSnapshot(const std::string& path, const std::string& serial, const std::string& version,
                   const std::string& day = "01") {
  const std::string documents[] = {
      "\xEF\xBB\xBF?keva\n+AssetInfo=\nserial-number=" + serial + "\nlast-scan=202605" + day +
          "080000.000000+000\n-\n",
      "\xEF\xBB\xBF?keva\n+Snapshot=\nkind=mac\n+Software=\n*Soft:Safari=Safari\nversion=" +
          version + "\n~unit=x\n-\n+OS=all\n*os=\nname=macOS\n-\n-\n"};
  std::string data;
  std::string header = "[H]\ncount=2\nsnapshotcount=1\n";
  for (std::size_t i = 0; i < 2; ++i) {
    const std::string section = blob(documents[i]);
    header += "[" + std::to_string(i) + "]\noffset=" + std::to_string(data.size()) +
              "\nlength=" + std::to_string(section.size()) +
              (i == 0 ? "\ntype=assetinfo\n" : "\ntype=snapshot\ntimestamp=20260501\n");
    data += section;
  }
  write(path, huxFile(data, header));
}

// A program with a terminal of its own, and the person in front of it.
class Prompt {
 public:
  explicit Prompt(const std::string& line) : screen_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (screen_ < 0 || grantpt(screen_) != 0 || unlockpt(screen_) != 0) return;
    const std::string name = ptsname(screen_);
    process_ = fork();
    if (process_ != 0) return;
    setsid();
    const int terminal = open(name.c_str(), O_RDWR);
    ioctl(terminal, TIOCSCTTY, 0);
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(terminal, file);
    execl("/bin/sh", "sh", "-c", ("exec " + line).c_str(), nullptr);
    _exit(127);
  }
  ~Prompt() {
    if (process_ > 0) kill(process_, SIGKILL);
    if (process_ > 0) waitpid(process_, nullptr, 0);
    close(screen_);
  }
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  bool runs() const { return process_ > 0; }

  // Waits until that is shown, behind what was waited for before.
  testing::AssertionResult shows(const std::string& text) {
    constexpr int kPatience = 20'000;  // ms
    while (shown_.find(text) == std::string::npos) {
      pollfd waiting = {screen_, POLLIN, 0};
      char part[4096];
      const ssize_t size = poll(&waiting, 1, kPatience) == 1 ? read(screen_, part, sizeof part) : 0;
      if (size <= 0) return testing::AssertionFailure() << "no " << text << " in " << shown_;
      shown_.append(part, static_cast<std::size_t>(size));
    }
    shown_.erase(0, shown_.find(text) + text.size());
    return testing::AssertionSuccess();
  }

  void types(const std::string& keys) const {
    EXPECT_EQ(::write(screen_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  int exitCode() {
    int status = -1;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  int screen_;
  pid_t process_ = -1;
  std::string shown_;
};

class FleetDatabase : public WorkingFolder {
 protected:
  static void expect(const std::string& arguments, int exitCode, const Matcher<std::string>& output,
                     const Matcher<std::string>& errors = "") {
    const Outcome seen = outcome(kHuxutil + arguments);
    EXPECT_EQ(seen.exitCode, exitCode) << arguments;
    EXPECT_THAT(seen.output, output) << arguments;
    EXPECT_THAT(seen.errors, errors) << arguments;
  }
};

}  // namespace

TEST_F(FleetDatabase, TakesInWhatIsNewAndNamesWhatIsDamaged) {
  std::filesystem::create_directory("macs");
  writeSnapshot("macs/a.hux", "A", "15");
  writeSnapshot("macs/b.hux", "B", "16");
  std::filesystem::copy("macs/b.hux", "macs/copy.hux");
  const std::string whole = fileText("macs/a.hux");
  write("macs/cut.hux", whole.substr(0, whole.size() / 2));
  expect("load macs nowhere.hux --db f.db", 1, "5 files: 2 new, 1 known already, 2 left out\n",
         AllOf(HasSubstr("huxutil: macs/cut.hux: cut "), HasSubstr("nowhere.hux: No such file")));
  expect("load macs/a.hux --db f.db", 0, "1 file: 0 new, 1 known already, 0 left out\n");
  struct stat status {};
  stat("f.db", &status);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  const std::string safari = "'SELECT serial, version FROM software WHERE name = \"Safari\"' ";
  expect("sql --db f.db " + safari, 0, "serial  version\nA       15\nB       16\n");
  expect("sql --csv " + safari + "macs", 1, "serial,version\nA,15\nB,16\n", HasSubstr("cut.hux"));
  expect("sql --json --db f.db " + safari, 0,
         "[\n{\"serial\":\"A\",\"version\":\"15\"},\n{\"serial\":\"B\",\"version\":\"16\"}\n]\n");
  expect(
      "sql --db f.db --csv \"SELECT path, value FROM entries_now WHERE serial = 'A'"
      " AND document = 'snapshot'\"",
      0,
      "path,value\n/kind,mac\n/Software/Soft:Safari/,Safari\n/Software/Soft:Safari/version,15\n"
      "/Software/Soft:Safari/version~unit,x\n/OS/,all\n/OS/os/name,macOS\n");
  write("statements",
        "SELECT 1.5 AS one;\n-- nothing\nSELECT x'0123456789ABCDEFFEDCBA9876543210' AS two\n");
  expect("sql --db f.db <statements", 0, "one\n1.5\ntwo\nx'0123456789ABCDEFFEDCBA9876543210'\n");
  expect(
      "sql --db f.db --csv \"SELECT serial, min(rowid), count(*) FROM entries WHERE path GLOB "
      "'/OS/*' AND serial >= 'A' GROUP BY serial\"",
      0, "serial,min(rowid),count(*)\nA,4294967303,2\nB,8589934599,2\n");
  expect(
      "sql --db f.db --csv \"SELECT serial, count(*) FROM entries WHERE file = 'macs/a.hux' OR "
      "serial = "
      "'B'"
      " GROUP BY serial\"",
      0, "serial,count(*)\nA,8\nB,8\n");
  // The ends of two numbers in the header of SQLite's files: the user's, the application's.
  for (const auto& [byte, value, problem] : {
           std::tuple(63, '\x01', "an older"),
           {63, '\x03', "a newer"       },
           {71, 'x',    "something else"}
  }) {
    std::string other = fileText("f.db");
    other[static_cast<std::size_t>(byte)] = value;
    write("other.db", other);
    expect("sql --db other.db 'SELECT 1'", 2, "", HasSubstr(problem));
    expect("load macs/a.hux --db other.db", 2, "", HasSubstr(problem));
  }

  // What is no file is not waited for, and what nobody reads is not made.
  outcome("mkfifo macs/pipe.hux pipe && ln -s nowhere macs/link.hux && mkdir none");
  expect("load macs --db f.db", 1, "5 files: 0 new, 3 known already, 2 left out\n",
         AllOf(HasSubstr("macs/pipe.hux: is no file; left out"), HasSubstr("link.hux: No such")));
  for (const std::string place : {"pipe", "."}) {
    expect("sql --db " + place + " 'SELECT 1'", 2, "", "huxutil: " + place + ": is no file\n");
  }
  write("empty.db", "");
  expect("sql --db empty.db 'SELECT 1'", 2, "", HasSubstr("empty.db: is empty; load"));
  expect("load macs/a.hux --db pipe", 2, "", "huxutil: pipe: is no file\n");
  expect("load none --db none.db", 2, "", HasSubstr("no snapshot files"));
  EXPECT_FALSE(std::filesystem::exists("none.db"));
  expect("load macs/a.hux nowhere.hux --to clickhouse | tail -n 1", 0, StartsWith("INSERT INTO"),
         EndsWith("2 files: 1 printed, 1 left out\n"));
  writeSnapshot("marks.hux", "a\"b\\c", "15");
  expect("load marks.hux --to clickhouse", 0, HasSubstr("a\\u0022b\\u005cc"), testing::_);
  expect("load macs --to clickhouse --db f.db", 2, "", HasSubstr("where to?"));
  expect("sql --csv --json --db f.db 'SELECT 1'", 2, "", HasSubstr("one of"));

  write("text.db",
        "no database, and longer than the header of one, which takes a hundred bytes: "
        "so that it is not taken for an empty one");
  expect("load macs/a.hux --db text.db", 2, "", "huxutil: text.db: file is not a database\n");
  expect("sql --db nowhere.db 'SELECT 1'", 2, "", HasSubstr("No such file"));
  expect("load macs", 2, "", HasSubstr("where to?"));
  expect("sql 'SELECT 1'", 2, "", HasSubstr("of what?"));
}

#if defined(__linux__) && !defined(SANITIZED)  // sanitizers take all memory that could be there
TEST_F(FleetDatabase, TakesInTheOthersWhereMemoryDoesNotLastForOne) {
  std::filesystem::create_directory("macs");
  std::string great = "\xEF\xBB\xBF?keva\n+Snapshot=\n+Software=\n";
  for (int i = 0; i < 1'000'000; ++i) great += "*Soft:a 1=a\n";
  write("macs/0.hux", fileOfOne("snapshot", blob(great + "-\n-\n")));
  writeSnapshot("macs/a.hux", "A", "15");
  const auto within = [](const std::string& arguments) {
    return outcome("ulimit -v 220000; " + kHuxutil + arguments);
  };
  const std::string refused = "huxutil: macs/0.hux: takes more memory than there is\n";
  const Outcome load = within("load macs --db f.db");
  EXPECT_EQ(load.exitCode, 1);
  EXPECT_EQ(load.output + load.errors, "2 files: 1 new, 0 known already, 1 left out\n" + refused);
  EXPECT_EQ(within("load macs --to clickhouse").errors,
            refused + "2 files: 1 printed, 1 left out\n");
  const Outcome history = within("history macs");
  EXPECT_EQ(history.exitCode, 2);
  EXPECT_EQ(history.errors, refused);
  EXPECT_EQ(within("card macs/0.hux").errors, "huxutil: card: takes more memory than there is\n");
}
#endif

TEST_F(FleetDatabase, AQueryCanOnlyRead) {
  writeSnapshot("a.hux", "A", "15");
  expect("load a.hux --db f.db", 0, testing::_);
  const std::string before = fileText("f.db");
  constexpr const char* kRefused[] = {"DELETE FROM _scans",
                                      "DROP VIEW software",
                                      "CREATE TABLE t (a)",
                                      "CREATE TEMP TABLE t (a)",
                                      "UPDATE _scans SET file = 1",
                                      "ATTACH 'f.db' AS x",
                                      "VACUUM",
                                      "VACUUM INTO 'x.db'",
                                      "PRAGMA journal_mode = WAL",
                                      "PRAGMA query_only = 0",
                                      "PRAGMA writable_schema = 1",
                                      "SELECT load_extension('x')",
                                      "SELECT fts3_tokenizer('simple')",
                                      "SELECT fts3_tokenizer('simple', x'4141414141414141')",
                                      "CREATE VIRTUAL TABLE x USING fts4(a)",
                                      "ANALYZE",
                                      "REINDEX",
                                      "BEGIN; DELETE FROM _scans; COMMIT"};
  const auto refused = testing::AnyOf("huxutil: sql: a query can only read\n",
                                      StartsWith("huxutil: sql: not authorized to use function: "));
  for (const char* query : kRefused) {
    for (const char* source : {"--db f.db ", ""}) {
      expect("sql " + std::string(source) + "\"" + query + "\"" + (*source == '\0' ? " a.hux" : ""),
             2, "", refused);
    }
  }
  EXPECT_EQ(fileText("f.db"), before);
  EXPECT_FALSE(std::filesystem::exists("x.db"));
  expect("sql --db f.db 'SELECT * FORM software'", 2, "",
         "huxutil: sql: near \"FORM\": syntax error, at character 10\n");
  expect("sql --db f.db 'SELEC 1'", 2, "",
         "huxutil: sql: near \"SELEC\": syntax error, at character 1\n");
  expect("sql --db f.db \"SELECT '\xC3\xA9', nane FROM software\"", 2, "",
         "huxutil: sql: no such column: nane, at character 13\n");
  expect(
      "sql --db f.db \"SELECT 1 AS b; SELECT a_, a1, aZ, Za, a\xC3\xA9, a FROM (SELECT 1 AS a_, 2"
      " AS a1, 3 AS aZ, 4 AS Za, 5 AS a\xC3\xA9)\"",
      2, "b\n1\n", "huxutil: sql: no such column: a, at character 43\n");
  expect("sql --db f.db 'SELECT a'", 2, "", HasSubstr("column: a, at character 8\n"));
  expect(
      "sql --db f.db 'PRAGMA table_info(_seed); PRAGMA index_list(_scans); PRAGMA database_list;"
      " PRAGMA index_info(_scans_serial); PRAGMA collation_list; PRAGMA compile_options'",
      0, HasSubstr("seed"));
  expect("sql --db f.db \"SELECT zeroblob(600000000)\"", 2, testing::_,
         "huxutil: sql: string or blob too big\n");
}

TEST_F(FleetDatabase, AnswersAtAPrompt) {
  writeSnapshot("a.hux", "A", "15");
  expect("load a.hux --db f.db", 0, testing::_);
  Prompt prompt(kHuxutil + "sql --db f.db");
  if (!prompt.runs()) GTEST_SKIP() << "no terminal to be had";
  constexpr const char* kInterrupt = "\3";
  constexpr const char* kEnd = "\4";
  constexpr const char* kEndless =
      "SELECT 'beg' || 'un'; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
      "SELECT count(*) FROM n;\n";
  ASSERT_TRUE(prompt.shows("sql> "));
  prompt.types("\n");
  ASSERT_TRUE(prompt.shows("sql> "));
  prompt.types(".tables \n");
  ASSERT_TRUE(prompt.shows("scans\r\n"));
  ASSERT_TRUE(prompt.shows("software_spread\r\nentries\r\nentries_now\r\n"));
  ASSERT_TRUE(prompt.shows("sql> "));
  prompt.types(".schema findings\n");
  ASSERT_TRUE(prompt.shows("\"damage\", \"incomplete\", \"remark\", \"limit\""));
  ASSERT_TRUE(prompt.shows("sql> "));
  prompt.types("SELECT 1 +\n");
  ASSERT_TRUE(prompt.shows("...> "));
  prompt.types(kInterrupt);
  ASSERT_TRUE(prompt.shows("sql> "));
  prompt.types(kEndless);
  ASSERT_TRUE(prompt.shows("begun"));
  prompt.types(kInterrupt);
  ASSERT_TRUE(prompt.shows("huxutil: sql: interrupted"));
  ASSERT_TRUE(prompt.shows("sql> "));
  prompt.types("SELECT 6 * 7\n");
  ASSERT_TRUE(prompt.shows("...> "));
  prompt.types(kEnd);
  ASSERT_TRUE(prompt.shows("42"));
  EXPECT_EQ(prompt.exitCode(), 0);
}

// The same rows as csv has, so that no column is mixed up on the way.
TEST_F(FleetDatabase, HasTheTablesOfTheFile) {
  writeScript("bin/ps", "");
  outcome(kMac + kAgent + "-silent && mv *.hux mac.hux");
  for (const std::string table : {"adapters", "users", "processes", "environment", "firewall"}) {
    const std::string csv = outcome(kHuxutil + "csv " + table + " mac.hux").output;
    const std::string names = csv.substr(0, csv.find('\n'));
    expect("sql --csv 'SELECT " + names + " FROM " + table + "' mac.hux", 0, csv);
  }
}

// Each machine by its latest scan, and what it says as text.
TEST_F(FleetDatabase, IsDrawnOnOnePage) {
  writeSnapshot("old.hux", "A", "15");
  writeSnapshot("new.hux", "A", "16", "03");
  writeSnapshot("b.hux", "B", "16");
  writeSnapshot("c.hux", "<script>", "<b>&");
  expect("load old.hux new.hux b.hux c.hux --db f.db", 0, testing::_);
  expect(
      "fleet --db f.db", 0,
      AllOf(HasSubstr("<h1>A fleet of 3 machines</h1>"), HasSubstr("<b>4</b>"),
            HasSubstr("<b>2026-05-03</b>"),
            HasSubstr("Safari <small>16 on 2, &lt;b&gt;&amp; on 1<"),
            HasSubstr("<h3>The hardware is missing</h3>"), HasSubstr("3 machines \xC2\xB7 100 %"),
            HasSubstr("<small>&lt;script&gt;</small>"), testing::Not(HasSubstr("<script"))));
  expect(
      "sql --csv --db f.db \"SELECT (SELECT count(*) FROM entries WHERE value = 'Safari') AS a,"
      " (SELECT count(*) FROM entries_now WHERE value = 'Safari') AS b\"",
      0, "a,b\n4,3\n");
  expect("fleet --db f.db -o page.html", 0, "");
  expect("fleet --db f.db -o page.html", 2, "", HasSubstr("page.html: "));
  expect("load nowhere.hux --db empty.db", 1, testing::_, testing::_);
  expect("fleet --db empty.db", 1, "", "huxutil: empty.db: holds no scans; load takes them in\n");
  expect("fleet --db b.hux", 2, "", "huxutil: b.hux: file is not a database\n");
  expect("fleet", 2, "", HasSubstr("--db FILE"));
}

TEST_F(FleetDatabase, AKilledLoadLosesAndDoublesNothing) {
  std::filesystem::create_directory("macs");
  constexpr int kFiles = 300;
  for (int i = 0; i < kFiles; ++i) {
    const std::string number = std::to_string(i);
    writeSnapshot("macs/" + number + ".hux", number, std::to_string(i % 3));
  }
  for (const char* seconds : {"0.005", "0.02", "0.05", "0.1", "0.2"}) {
    outcome("timeout -s KILL " + std::string(seconds) + " " + kHuxutil + "load macs --db f.db");
  }
  expect("load macs --db f.db", 0, StartsWith("300 files: "));
  expect(
      "sql --db f.db --csv 'SELECT count(*), count(DISTINCT serial) FROM software_now;"
      " SELECT count(*) FROM _software_rows; SELECT count(*) FROM scans'",
      0, "count(*),count(DISTINCT serial)\n300,300\ncount(*)\n3\ncount(*)\n300\n");
}
