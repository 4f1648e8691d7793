#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "show/terminal.h"

// Standard output and standard error of the program.

// The terminal that standard output is, if it is one.
show::Terminal outputTerminal();

// The columns of lines for it: only a person's window has an end.
std::size_t widthOf(const show::Terminal& terminal);

// Writes to standard output. A failure is kept for finishOutput.
void printOutput(std::string_view text);

// The same for bytes of a file: on a terminal none of them reaches it as a control character,
// anywhere else they stay as they are.
void printBytes(std::string_view bytes);

// Whether somebody still takes it in: false once a write has failed.
bool outputGoesOn();

// Shows on a terminal what was written until now.
void flushOutput();

// Writes to standard error what is already a whole message.
void printErrors(std::string_view text);

// "huxutil: FILE: reason", with a line feed, in a form fit for a terminal.
std::string message(std::string_view file, std::string_view reason);
void printMessage(std::string_view file, std::string_view reason);

// Closes standard output, so that no write error goes unnoticed. Returns `code`, or kTrouble after
// a message when not everything could be written; a reader that went away has had enough, that is
// no error.
int finishOutput(int code);

// Writes a new file that only its owner can read; when `force` in the place of what is there, which
// stays as it was until all is written, and also into a pipe or a device. Returns kDone, or
// kTrouble after a message; nothing half-written is left.
int writeFile(const std::string& path, std::string_view content, bool force);
