#pragma once

#include <string>
#include <vector>

#include "keva/kevaDoc.h"
#include "platform/host.h"

// "Environment": the variables of the agent's environment, as "env" prints them.
void PostProcessEnvironment(kevaDoc& snapshot, platform::Host& host);

struct Variable {
  std::string name;
  std::string value;
};

// The NAME=VALUE lines of the output. An empty line ends it, a last line without a line end is not
// read, a line without "=" is passed over.
std::vector<Variable> parseEnvironment(const std::string& output);
