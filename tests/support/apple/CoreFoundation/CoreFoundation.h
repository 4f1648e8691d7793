#pragma once

// The declarations that programs for the Mac are compiled with on Linux; standIn.cpp implements
// them. Strings of the program are the one thing that takes a compiler for the Mac.

extern "C" const struct __CFString* standInString(const char* text);
#define CFSTR(text) standInString(text)

#include "../../../../cmake/macos/frameworks/CoreFoundation.framework/Headers/CoreFoundation.h"
