#pragma once

#include <string>
#include <vector>

#include "platform/host.h"

namespace platform {

// Host::bundles by reading the folder: like the platform, any folder in it counts as a bundle.
std::vector<Bundle> readBundleFolder(const std::string& folder);

}  // namespace platform
