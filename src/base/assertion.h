#pragma once

// Assertions that hold in every build: a snapshot is either whole or not written at all.

// Prints "FILE:LINE: failed assertion `CONDITION'" to standard error and aborts.
[[noreturn]] void failAssertion(const char* file, unsigned line, const char* condition);

// Calls failAssertion when `holds` is false.
inline void requireThat(bool holds, const char* file, unsigned line, const char* condition) {
  if (!holds) failAssertion(file, line, condition);
}
