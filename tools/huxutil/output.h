#pragma once

#include <string>
#include <string_view>

#include "show/terminal.h"

// Standard output and standard error of the program.

// The terminal that standard output is, if it is one.
show::Terminal outputTerminal();

// Writes to standard output. A failure is kept for finishOutput.
void printOutput(std::string_view text);

// The same for bytes of a file: on a terminal none of them reaches it as a control character,
// anywhere else they stay as they are.
void printBytes(std::string_view bytes);

// Writes to standard error what is already a whole message.
void printErrors(std::string_view text);

// "huxutil: FILE: reason", with a line feed, in a form fit for a terminal.
std::string message(std::string_view file, std::string_view reason);
void printMessage(std::string_view file, std::string_view reason);

// Closes standard output, so that no write error goes unnoticed. Returns `code`, or kTrouble after
// a message when not everything could be written; a reader that went away has had enough, that is
// no error.
int finishOutput(int code);

// Writes a new file that only its owner can read, or replaces what is there when `force`. Returns
// kDone, or kTrouble after a message; a plain file that could not be written to its end is
// removed.
int writeFile(const std::string& path, std::string_view content, bool force);
