#include "platform/propertyList.h"

#include <algorithm>

namespace platform {

const PropertyList* PropertyList::find(std::string_view key) const {
  const Dictionary* entries = dictionary();
  if (entries == nullptr) return nullptr;
  const auto found = std::ranges::find(*entries, key, &Dictionary::value_type::first);
  return found == entries->end() ? nullptr : &found->second;
}

const PropertyList* PropertyList::at(std::size_t index) const {
  const Array* elements = array();
  return elements != nullptr && index < elements->size() ? &(*elements)[index] : nullptr;
}

}  // namespace platform
