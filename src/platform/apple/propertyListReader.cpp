#include "platform/apple/propertyListReader.h"

#include <CoreFoundation/CoreFoundation.h>

#include "platform/apple/cfValue.h"

namespace platform::apple {

namespace {

// The successor of this call also reads binary lists; what the profiler prints is XML. Deprecated
// since 10.10, exported by every system since.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
Owned<CFPropertyListRef> parse(CFDataRef document) {
  return Owned<CFPropertyListRef>(
      CFPropertyListCreateFromXMLData(nullptr, document, kCFPropertyListImmutable, nullptr));
}
#pragma GCC diagnostic pop

}  // namespace

std::optional<PropertyList> readPropertyList(std::string_view document) {
  // A profile is many megabytes: kCFAllocatorNull leaves its bytes where they are, and ours.
  const Owned<CFDataRef> data(
      CFDataCreateWithBytesNoCopy(nullptr, reinterpret_cast<const UInt8*>(document.data()),
                                  static_cast<CFIndex>(document.size()), kCFAllocatorNull));
  if (!data) return std::nullopt;
  const Owned<CFPropertyListRef> list = parse(data.get());
  return list ? valueOf(list.get()) : std::nullopt;
}

}  // namespace platform::apple
