#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "fleet/scan.h"
#include "fleet/store.h"
#include "huxread/result.h"

// The scan in the bytes of a file. Of one that is damaged or was cut off the error says so.
huxread::Result<fleet::Scan> scanOf(const std::string& path, std::string bytes);

// What became of the files.
struct Taken {
  std::size_t added = 0;
  std::size_t known = 0;    // their content was there already
  std::size_t leftOut = 0;  // damaged or unreadable; each was named on standard error
};

// Takes files into a store, on all processors, in their order, and commits. Shows how it goes on
// when standard error is a terminal. When the store fails it stops; ask that.
Taken takeIn(const std::vector<std::string>& files, fleet::Store& store);
