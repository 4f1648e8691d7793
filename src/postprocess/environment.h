#pragma once

#include <string_view>
#include <vector>

#include "keva/kevaDoc.h"
#include "platform/host.h"

// "Environment": the variables of the agent's environment, as "env" prints them.
void PostProcessEnvironment(kevaDoc& snapshot, platform::Host& host);

struct Variable {
  std::string_view name;
  std::string_view value;
};

// The NAME=VALUE lines of the output, as parts of it. An empty line ends it, a last line without a
// line end is not read, a line without "=" is passed over.
std::vector<Variable> parseEnvironment(std::string_view output);
