#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/propertyList.h"

// The one door to CoreFoundation values: what is created goes with its scope, and what leaves the
// folder is a std::string or a PropertyList.

namespace platform::apple {

struct Release {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

// An object that a function named Create or Copy has returned, which makes it ours to release; null
// when that function had none to give. What functions named Get return is never put in here: it
// belongs to the object it was got from.
template <typename Ref>
using Owned = std::unique_ptr<std::remove_pointer_t<Ref>, Release>;

Owned<CFStringRef> makeString(std::string_view utf8);

// UTF-8 of the whole string; "" for a null one.
std::string textOf(CFStringRef string);

// A property list as a tree of our own, dictionaries in the order of their keys' bytes. Objects
// that are in no XML property list (CFBundle adds URLs to information dictionaries) become data.
// Nothing when arrays and dictionaries are nested more than Host::kMaxNesting deep.
std::optional<PropertyList> valueOf(CFTypeRef object);

}  // namespace platform::apple
