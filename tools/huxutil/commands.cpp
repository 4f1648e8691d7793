#include "command.h"

namespace {

using Words = Operand::Words;

constexpr Operand kFile = {"FILE", "a snapshot file, or \"-\" for standard input", &Arguments::file,
                           Words::Files};
constexpr Operand kFiles = {"FILE...", "snapshot files, folders of them, or \"-\"",
                            &Arguments::files, Words::Files};
constexpr Option kOutput = {"-o", "FILE", "write to that file, which must not exist",
                            &Arguments::output};
constexpr Option kForce = {"-f", nullptr, "overwrite the file named by -o", &Arguments::force};

constexpr Operand kOneFile[] = {kFile};
constexpr Operand kManyFiles[] = {kFiles};
constexpr Operand kText[] = {
    kFile,
    {"[SECTION]", "its number or type; the first one when left out", &Arguments::section},
};
constexpr Option kTextOptions[] = {
    {"--salvage", nullptr, "print what can be read of a damaged or cut file", &Arguments::salvage},
};
constexpr Operand kCsv[] = {
    {"TABLE", "a table of docs/tables.md", &Arguments::table, Words::Tables},
    kFiles,
};
constexpr Operand kGet[] = {
    kFile,
    {"NAME...", "TABLE.COLUMN, TABLE[ROW].COLUMN or a path of the document", &Arguments::names},
};
constexpr Operand kFind[] = {
    {"TERM", "any part of a value, in any case", &Arguments::term},
    kFiles,
};
constexpr Option kVerifyOptions[] = {
    {"--complete", nullptr, "also ask for what every Mac has",         &Arguments::complete},
    {"--ignore",   "ID",    "leave a finding out; can be given often", &Arguments::ignored },
};
constexpr Operand kDiff[] = {
    {"A", "the earlier file", &Arguments::file,  Words::Files},
    {"B", "the later file",   &Arguments::later, Words::Files},
};
constexpr Option kJson = {"--json", nullptr, "as JSON", &Arguments::json};
constexpr Option kCsvOutput = {"--csv", nullptr, "as comma-separated values", &Arguments::csv};
constexpr Option kDatabase = {"--db", "FILE", "the database of the fleet", &Arguments::database};
constexpr Option kDiffOptions[] = {
    {"--all",    nullptr,          "also what changes by itself: free space, processes", &Arguments::all    },
    kJson,
    {"--ignore", "TABLE[.COLUMN]", "leave that out; can be given often",                 &Arguments::ignored},
    {"-q",       nullptr,          "print nothing, the exit code says it",               &Arguments::quiet  },
};
constexpr Option kHistoryOptions[] = {kJson};
constexpr Option kRedactOptions[] = {
    kOutput,
    kForce,
    {"--keep",    "KIND",  "leave secrets of that kind; can be given often", &Arguments::kept  },
    {"--map",     "FILE",  "write what became what into that file, too",     &Arguments::map   },
    {"--dry-run", nullptr, "write nothing, count what would be replaced",    &Arguments::dryRun},
};
constexpr Operand kReport[] = {
    kFile,
    {"[LATER]", "a later file of the same machine, to compare with", &Arguments::later,
      Words::Files},
};
constexpr Option kPageOptions[] = {kOutput, kForce};
constexpr Operand kSql[] = {
    {"[QUERY]",                             "a query in the SQL of SQLite", &Arguments::query},
    { "[FILE...]", "snapshot files and folders of them",              &Arguments::files,      Words::Files},
};
constexpr Option kSqlOptions[] = {kDatabase, kCsvOutput, kJson};
constexpr Operand kLoad[] = {
    {"[FILE...]", kFiles.help, &Arguments::files, Words::Files},
};
constexpr Option kLoadOptions[] = {
    kDatabase,
    {"--to", "ENGINE", "print what \"clickhouse\" takes in instead", &Arguments::engine},
};
constexpr Option kFleetOptions[] = {kDatabase, kOutput, kForce};
constexpr Option kRawOptions[] = {kOutput, kForce};
constexpr Operand kShell[] = {
    {"SHELL", "bash or zsh", &Arguments::shell, Words::Shells},
};

// clang-format off
constexpr Command kCommands[] = {
  {"card", kOneFile, {}, runCard,
   "one screen about the machine; \"huxutil FILE\" does the same",
   nullptr},
  {"list", kOneFile, {}, runList,
   "the sections of the file",
   "Number, type, offset and length in bytes, time stamp (\"-\" where there is none)."},
  {"text", kText, kTextOptions, runText,
   "the text of a section",
   "Byte for byte as it was before it was compressed; on a terminal control bytes are\n"
   "shown instead of sent."},
  {"json", kManyFiles, {}, runJson,
   "all tables as JSON",
   "One document; with several files one on each line. docs/hux.schema.json describes it."},
  {"csv", kCsv, {}, runCsv,
   "one table as comma-separated values",
   "All files into one table, with file and serial number in front."},
  {"get", kGet, {}, runGet,
   "single values, one on each line",
   "machine.memory_mb, software[Safari].version, disks.model, or a path of the document as\n"
   "its text shows it: /OS/os:1/version."},
  {"find", kFind, {}, runFind,
   "where a term stands",
   "FILE: table row: column = value."},
  {"verify", kManyFiles, kVerifyOptions, runVerify,
   "damage, gaps and remarks",
   "docs/findings.md explains the findings. Damage, and with --complete a gap, end with 1."},
  {"diff", kDiff, kDiffOptions, runDiff,
   "what changed between two files",
   "By what identifies an item, not by its place; only what both files know counts.\n"
   "Exit code: 0 nothing, 1 something, 2 trouble."},
  {"history", kManyFiles, kHistoryOptions, runHistory,
   "each machine's timeline of changes",
   "By serial number, else UUID, and by the time of the scan; files are read twice."},
  {"redact", kOneFile, kRedactOptions, runRedact,
   "a copy without what gives people and machines away",
   "The same token stands for a secret wherever it is: SERIAL-1, USER-2, 192.0.2.3. Kinds:\n"
   "serial, hardware-address, network-address, uuid, user, host, volume, network, printer,\n"
   "device, arguments (of processes), environment. Without --dry-run -o is needed."},
  {"report", kReport, kPageOptions, runReport,
   "a machine, or what changed on it, as one page of HTML",
   "For a ticket, a browser or a printer: it loads nothing and runs nothing."},
  {"load", kLoad, kLoadOptions, runLoad,
   "files into the database of a fleet; prints how many were new",
   "What is there already, by its content, is passed over; damaged files are named and left\n"
   "out, and end with 1. A load that was stopped can be run again."},
  {"sql", kSql, kSqlOptions, runSql,
   "the answer to a query about files or a fleet",
   "Tables as in docs/tables.md, software_now and so on of each machine's latest scan only,\n"
   "scans, findings, and entries: every entry of every document by path. Without a query it\n"
   "reads statements from standard input, on a terminal at a prompt. It only reads."},
  {"fleet", {}, kFleetOptions, runFleet,
   "a fleet as one page of HTML",
   "What load took in, each machine by its latest scan. A database without scans ends with 1."},
  {"raw", kOneFile, kRawOptions, runRaw,
   "the profiler's document of a debug file",
   "The Mac's System Information opens it under a name that ends in .spx."},
  {"completions", kShell, {}, runCompletions,
   "a completion script for a shell",
   nullptr},
};
// clang-format on

}  // namespace

std::span<const Command> commands() {
  return kCommands;
}
