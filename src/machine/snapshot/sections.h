#pragma once

#include "huxread/document.h"
#include "machine/description.h"

// The sections of a snapshot, each into its tables. A table is recorded when its section is there:
// one that is missing may mean that the machine has none or that it did not report them.

namespace machine::snapshot {

void readMachine(const huxread::TagView& top, Description& machine);
void readMemory(const huxread::TagView& top, Description& machine);
void readStorage(const huxread::TagView& top, Description& machine);  // disks, volumes
void readVideo(const huxread::TagView& top, Description& machine);    // displays, video
void readAdapters(const huxread::TagView& top, Description& machine);
void readUsb(const huxread::TagView& top, Description& machine);
void readPrinters(const huxread::TagView& top, Description& machine);
void readLists(const huxread::TagView& top, Description& machine);     // software, plugins, users,
                                                                       // processes, environment
void readSettings(const huxread::TagView& top, Description& machine);  // firewall, power

// The processor by its name: the one in "Processors", and on Apple silicon, where that has none,
// the first video adapter, which is the same chip. "" when neither is a name.
std::string_view chipName(const huxread::TagView& top);

}  // namespace machine::snapshot
