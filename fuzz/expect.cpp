#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzzers.h"

void fuzz::expect(bool holds, const char* what, const std::string& text) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s: \"%s\"\n", what, text.c_str());
  std::abort();
}
