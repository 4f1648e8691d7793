#pragma once

#include <cstdint>

#include "keva/tag.h"
#include "postprocess/mapping.h"

// The amounts of a volume, as partitions of fixed and of removable disks state them. All are
// binary: a gigabyte has 2^30 bytes.

struct VolumeAmounts {
  std::int64_t size = 0;  // bytes; 0 when the volume does not say it
  std::int64_t free = 0;  // bytes
  bool hasFree = false;   // whether the volume says what is free
};

// Writes "size", "free" and "used", each when the volume says it: gigabytes with two decimals, or
// below one gigabyte megabytes with one decimal and the property "units"; the property "base-value"
// has the bytes.
VolumeAmounts writeAmounts(const Item& volume, Tag& partition);

// Writes "free%" and "used%" when what is free is known and the size is not 0.
void writePercentages(const VolumeAmounts& amounts, Tag& partition);
