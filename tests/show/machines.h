#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>

#include "machine/description.h"

// Machines that are made up.

using Cells = std::initializer_list<std::pair<std::string_view, machine::Value>>;

// Adds a row with these columns known to a table, which is recorded from then on.
void addRow(machine::Description& machine, std::string_view table, Cells cells);

// A notebook of which a debug file tells nearly everything.
machine::Description notebook();

// More of everything than a screen holds, with names that are hard on one.
machine::Description monster();
