#pragma once

#include <optional>
#include <string_view>

#include "platform/propertyList.h"

namespace platform::apple {

// Host::parsePropertyList by CoreFoundation's parser.
std::optional<PropertyList> readPropertyList(std::string_view document);

}  // namespace platform::apple
