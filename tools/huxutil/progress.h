#pragma once

#include <chrono>
#include <cstddef>

// How many files of so many are done, at what rate and for how long still: one line on the terminal
// that standard error is, drawn anew some times a second; nothing elsewhere. It goes with its end.
class Progress {
 public:
  explicit Progress(std::size_t total);
  ~Progress() { clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void show(std::size_t done);

  // Before anything else is printed.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t total_;
  bool terminal_;
  bool shown_ = false;
  Clock::time_point began_ = Clock::now();
  Clock::time_point drawn_ = began_;
};
