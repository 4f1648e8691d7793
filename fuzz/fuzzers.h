#pragma once

#include <string>

// What reads bytes from outside, each with what must hold of whatever it reads: expect() ends the
// program where it does not. A fuzzer says whether it was its kind of input or was refused.
// corpus/NAME holds seeds: those whose names begin with "valid" are read, the others refused.
// scripts/fuzz looks for more of them; the tests run them all.

namespace fuzz {

bool commandOutput(const std::string& input);
bool document(const std::string& input);
bool edid(const std::string& input);
bool huxFile(const std::string& input);
bool pipeline(const std::string& input);
bool propertyList(const std::string& input);
bool redact(const std::string& input);

// Ends the program when it does not hold, after saying `what` must, and of which text of the input.
void expect(bool holds, const char* what, const std::string& text = "");

}  // namespace fuzz
