#pragma once

#include <optional>
#include <string>

#include "keva/kevaDoc.h"
#include "platform/host.h"

// "Peripherals"/"USB": every device that is no hub, and for those with removable media a disk in
// "Storage" besides. The host is asked for the media's name.
void PostProcessUsb(kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host);

// The name of a disk's medium from the output of "diskutil info"; nothing when it is not there.
std::optional<std::string> parseMediaName(const std::string& output);
