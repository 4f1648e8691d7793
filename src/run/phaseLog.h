#pragma once

#include "base/console.h"

// The log of a scan's phases on standard output, for runs that ask for it ("-log").
class PhaseLog {
 public:
  explicit PhaseLog(bool on) : on_(on) {}

  // Prints when the log is on.
  void operator()(const char* text) const {
    if (on_) printText("%s", text);
  }

 private:
  bool on_;
};
