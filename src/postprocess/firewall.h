#pragma once

#include "keva/kevaDoc.h"

// "Security"/"Firewall": the application firewall's state and rules.
void PostProcessFirewall(kevaDoc& snapshot, const kevaDoc& raw);
