#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
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

// A text, number, boolean or date; data for an object of any other kind, also for those that are in
// no property list (CFBundle adds URLs to information dictionaries). Nothing for an array or a
// dictionary.
std::optional<PropertyList> scalarOf(CFTypeRef object);

// A property list that was read from a document of so many bytes, as a tree of our own,
// dictionaries in the order of their keys' bytes. Entries whose key is no text, as a binary list
// may have, are left out. Nothing when arrays and dictionaries are nested more than
// Host::kMaxNesting deep, or unfold to much more than the document can hold: those of a binary list
// may share what is in them, so that a few bytes stand for more than there is memory.
std::optional<PropertyList> valueOf(CFTypeRef object, std::size_t documentSize);

}  // namespace platform::apple
