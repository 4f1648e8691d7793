#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The command line of huxutil as data: help texts, completions and the parser are made from it.

// Exit codes. Of several files the highest counts.
inline constexpr int kDone = 0;     // done, found, valid
inline constexpr int kNo = 1;       // the honest no: not found, damaged, incomplete
inline constexpr int kTrouble = 2;  // wrong usage, unreadable, no snapshot file

// What stands on a command line.
struct Arguments {
  std::string file;                    // of commands that take one
  std::vector<std::string> files;      // of those that take many
  std::vector<std::string> names;      // of values, "get"
  std::string table;                   // "csv"
  std::string term;                    // "find"
  std::optional<std::string> section;  // "text"; nothing for the first one
  std::string output;                  // -o; "" for standard output
  std::string shell;                   // "completions"
  std::vector<std::string> ignored;    // --ignore
  std::optional<std::string> later;    // the second file of "diff" and "report"
  std::vector<std::string> kept;       // --keep
  std::string map;                     // --map; "" for none
  std::optional<std::string> query;    // "sql"
  std::string database;                // --db; "" for none
  std::string engine;                  // --to
  bool all = false;
  bool json = false;
  bool csv = false;
  bool quiet = false;
  bool dryRun = false;
  bool salvage = false;
  bool complete = false;
  bool force = false;
};

struct Operand {
  const char* name;  // "FILE...", "[SECTION]"
  const char* help;
  std::variant<std::string Arguments::*, std::vector<std::string> Arguments::*,
               std::optional<std::string> Arguments::*>
      target;
  enum class Words { None, Files, Tables, Shells } words = Words::None;  // for completions
};

struct Option {
  const char* name;   // "--ignore" or "-o"
  const char* value;  // what follows it, "ID"; null for a switch
  const char* help;
  std::variant<bool Arguments::*, std::string Arguments::*, std::vector<std::string> Arguments::*>
      target;
};

struct Command {
  const char* name;
  std::span<const Operand> operands;
  std::span<const Option> options;
  int (*run)(const Arguments& arguments);
  const char* summary;  // one line
  const char* details;  // further lines of its help, its exit codes when they are its own ("Exit
                        // code: "); may be null
};

// All commands in the order of the help. The one named "card" also runs without its name.
std::span<const Command> commands();

// One room each.
int runCard(const Arguments& arguments);
int runList(const Arguments& arguments);
int runText(const Arguments& arguments);
int runJson(const Arguments& arguments);
int runCsv(const Arguments& arguments);
int runGet(const Arguments& arguments);
int runFind(const Arguments& arguments);
int runVerify(const Arguments& arguments);
int runDiff(const Arguments& arguments);
int runHistory(const Arguments& arguments);
int runRedact(const Arguments& arguments);
int runReport(const Arguments& arguments);
int runSql(const Arguments& arguments);
int runLoad(const Arguments& arguments);
int loadToClickHouse(const Arguments& arguments);  // "load --to clickhouse"
int runFleet(const Arguments& arguments);
int runRaw(const Arguments& arguments);
int runCompletions(const Arguments& arguments);
