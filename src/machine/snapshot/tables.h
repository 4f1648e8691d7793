#pragma once

#include "huxread/document.h"
#include "machine/description.h"

// The tables as the documents of a snapshot file tell them.

namespace machine {

// The columns of "machine" that the asset record tells, which both kinds of files have.
void readAsset(const huxread::Document& asset, Description& machine);

// All tables of the inventory; what it says wrongly by its rules (docs/limits.md) is left out.
void readSnapshot(const huxread::Document& document, Description& machine);

}  // namespace machine
