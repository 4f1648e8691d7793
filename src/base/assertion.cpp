#include "base/assertion.h"

#include <cstdlib>

#include "base/console.h"

void failAssertion(const char* file, unsigned line, const char* condition) {
  printError("%s:%u: failed assertion `%s'\n", file, line, condition);
  std::abort();
}
