#pragma once

#include <string>

#include "machine/description.h"

namespace machine {

// A value as data: numbers with as many digits as tell them from their neighbours, "true" and
// "false", texts byte for byte; "" for what is not known.
std::string valueText(const Value& value);

}  // namespace machine
