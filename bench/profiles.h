#pragma once

#include <string>

// Profiles of machines that have `count` of one thing and nothing else, as the profiler prints
// them.

std::string applicationsProfile(int count);    // about 900 bytes each, as on a real Mac
std::string removableDisksProfile(int count);  // USB sticks with one volume each
std::string coreStorageProfile(int count);  // encrypted volumes, and what the overview says of them
std::string firewallProfile(int count);     // rules, in one dictionary
