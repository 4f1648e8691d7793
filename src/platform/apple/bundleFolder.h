#pragma once

#include <string>
#include <vector>

#include "platform/host.h"

namespace platform::apple {

// Host::bundles by CoreFoundation's bundle functions. `folder` is an absolute path.
std::vector<Bundle> readBundleFolder(const std::string& folder);

}  // namespace platform::apple
