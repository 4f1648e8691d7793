#pragma once

#include "huxread/container.h"
#include "keva/HUXfile.h"

namespace fuzz {

// The file as the reader opens it. Expects that it finds nothing wrong with it, and in every
// section what was written there.
huxread::Container readBack(HUXfile& file);

}  // namespace fuzz
