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
constexpr Option kRawOptions[] = {kOutput, kForce};
constexpr Operand kShell[] = {
    {"SHELL", "bash or zsh", &Arguments::shell, Words::Shells},
};

constexpr Command kCommands[] = {
    {"card",
     kOneFile,                  {},
     "one screen about the machine; \"huxutil FILE\" does the same",                       nullptr,
     runCard                                                                                                                                                                                      },
    {"list",
     kOneFile,                  {},
     "the sections of the file",                                                           "Number, type, offset and length in bytes, time stamp (\"-\" where there is none).",
     runList                                                                                                                                                                                      },
    {"text",        kText,      kTextOptions,   "the text of a section",
     "Byte for byte as it was before it was compressed; on a terminal control bytes are\n"
     "shown instead of sent.",                                                                                                                                                      runText       },
    {"json",
     kManyFiles,                {},
     "all tables as JSON",                                                                 "One document; with several files one on each line. docs/hux.schema.json describes it.",
     runJson                                                                                                                                                                                      },
    {"csv",
     kCsv,                      {},
     "one table as comma-separated values",                                                "All files into one table, with file and serial number in front.",
     runCsv                                                                                                                                                                                       },
    {"get",
     kGet,                      {},
     "single values, one on each line",                                                    "machine.memory_mb, software[Safari].version, disks.model, or a path of the document as\n"
     "its text shows it: /OS/os:1/version.",                                                                                                 runGet        },
    {"find",        kFind,      {},             "where a term stands",                     "FILE: table row: column = value.",                                                      runFind       },
    {"verify",      kManyFiles, kVerifyOptions, "damage, gaps and remarks",
     "docs/findings.md explains the findings. Damage, and with --complete a gap, end with 1.",                                                                                      runVerify     },
    {"raw",         kOneFile,   kRawOptions,    "the profiler's document of a debug file",
     "The Mac's System Information opens it under a name that ends in .spx.",                                                                                                       runRaw        },
    {"completions", kShell,     {},             "a completion script for a shell",         nullptr,                                                                                 runCompletions},
};

}  // namespace

std::span<const Command> commands() {
  return kCommands;
}
