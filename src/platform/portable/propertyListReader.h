#pragma once

#include <optional>
#include <string>

#include "platform/propertyList.h"

namespace platform {

// Host::parsePropertyList without the platform's parser: pugixml reads the XML, the rules of
// property lists are here.
std::optional<PropertyList> readPropertyList(std::string document);

}  // namespace platform
