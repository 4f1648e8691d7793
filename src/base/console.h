#pragma once

// Everything that is printed goes to the standard streams; there is no log file.

// Prints to standard output, without flushing: the phase log, the percentages, the final line.
[[gnu::format(printf, 1, 2)]] void printText(const char* format, ...);

// Prints to standard output and flushes, so that a watcher sees each post-processing step as it
// starts and ends.
[[gnu::format(printf, 1, 2)]] void printProgress(const char* format, ...);

// Prints to standard error.
[[gnu::format(printf, 1, 2)]] void printError(const char* format, ...);
