#pragma once

#include "machine/description.h"

// Machines that are made up.

// A notebook of which a debug file tells nearly everything.
machine::Description notebook();

// More of everything than a screen holds, with names that are hard on one.
machine::Description monster();
