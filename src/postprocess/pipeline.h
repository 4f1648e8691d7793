#pragma once

#include "keva/kevaDoc.h"
#include "platform/host.h"

// Maps the raw tree into the inventory: fifteen steps, one after the other, each filling its
// section below the snapshot's top tag. A step that finds nothing writes nothing. With `verbose`
// each step is announced on standard output.
void PostProcess(kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host, bool verbose);
