#pragma once

#include <string>

#include "keva/kevaDoc.h"
#include "platform/host.h"

// "Libraries": the internet plug-ins, sorted by name.
void PostProcessLibraries(kevaDoc& snapshot, platform::Host& host);

// Writes one library for each bundle of a folder, as members of the named group, unsorted.
void scanBundles(kevaDoc& snapshot, platform::Host& host, const std::string& folder,
                 const std::string& group);
