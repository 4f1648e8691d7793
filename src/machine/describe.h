#pragma once

#include "huxread/container.h"
#include "huxread/document.h"
#include "huxread/result.h"
#include "machine/description.h"
#include "platform/host.h"

namespace machine {

// The tables of a file. A file with a snapshot section is read from its documents, one with custom
// data from the profiler's document in it, which the host parses piece by piece; the asset record,
// in both, says who the machine is and when it was scanned. Fails when the file has neither
// section, and when a section that is needed cannot be read. Who has the
// document of the first snapshot already hands it over, so that it is not read again.
huxread::Result<Description> describe(const huxread::Container& file, platform::Host& host,
                                      const huxread::Document* snapshot = nullptr);

// Which machine a file is of and when it was scanned, without reading what it says of it: the table
// "machine" as the asset record has it. A file whose record names no machine is described whole.
huxread::Result<Description> identify(const huxread::Container& file, platform::Host& host);

}  // namespace machine
