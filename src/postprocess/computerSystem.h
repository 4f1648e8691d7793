#pragma once

#include "keva/kevaDoc.h"
#include "platform/host.h"

// "System": the computer and its chassis, its memory slots in short, its power management. The host
// is asked for the hardware UUID when the profile lacks it.
void PostProcessComputerSystem(kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host);
