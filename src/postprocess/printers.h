#pragma once

#include "keva/kevaDoc.h"

// "Peripherals": printers, those that also scan among them, and scanners that do not print.
void PostProcessPrinters(kevaDoc& snapshot, const kevaDoc& raw);
