#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host.h"

namespace platform::apple {

// Host::bundles by CoreFoundation's bundle functions. `folder` is an absolute path.
//
// These read Info.plist before anything here is asked, and a binary one whose keys are no texts or
// whose arrays share objects without end kills the process in there. It takes an administrator to
// put a bundle into a folder of the system's.
std::vector<Bundle> readBundleFolder(const std::string& folder,
                                     std::span<const std::string_view> keys);

}  // namespace platform::apple
