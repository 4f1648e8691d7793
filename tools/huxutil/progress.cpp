#include "progress.h"

#include <unistd.h>

#include "base/formatString.h"
#include "output.h"

Progress::Progress(std::size_t total) : total_(total), terminal_(isatty(STDERR_FILENO) != 0) {}

void Progress::show(std::size_t done) {
  constexpr std::chrono::milliseconds kPause(200);
  const Clock::time_point now = Clock::now();
  if (!terminal_ || now - drawn_ < kPause) return;
  drawn_ = now;
  const double seconds = std::chrono::duration<double>(now - began_).count();
  const double rate = static_cast<double>(done) / seconds;
  const double left = static_cast<double>(total_ - done) / rate;
  printErrors(formatString("\r\33[K%zu of %zu files, %.0f a second, %.0f s left", done, total_,
                           rate, left));
  shown_ = true;
}

void Progress::clear() {
  if (shown_) printErrors("\r\33[K");
  shown_ = false;
}
