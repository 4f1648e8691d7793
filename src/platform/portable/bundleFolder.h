#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host.h"

namespace platform {

// Host::bundles by reading the folder: like the platform, any folder in it counts as a bundle.
std::vector<Bundle> readBundleFolder(const std::string& folder,
                                     std::span<const std::string_view> keys);

// The whole information dictionary of the bundle at `path`; empty when there is none or it is
// unreadable.
PropertyList readBundleInfo(const std::string& path);

// The entries of a dictionary at some keys, in their order, as a dictionary: those that are there
// and are neither arrays nor dictionaries.
PropertyList scalarsAt(std::span<const std::string_view> keys, const PropertyList& dictionary);

}  // namespace platform
