#include "platform/apple/bundleFolder.h"

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <utility>

#include "platform/apple/cfValue.h"

namespace platform::apple {

namespace {

Owned<CFArrayRef> createBundles(const std::string& folder) {
  const Owned<CFStringRef> name = makeString(folder);
  if (!name) return nullptr;  // the bytes are no UTF-8, so there is no such folder
  const Owned<CFStringRef> path(
      CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%@/"), name.get()));
  const Owned<CFURLRef> url(
      CFURLCreateWithFileSystemPath(nullptr, path.get(), kCFURLPOSIXPathStyle, true));
  if (!url) return nullptr;
  return Owned<CFArrayRef>(CFBundleCreateBundlesFromDirectory(nullptr, url.get(), nullptr));
}

PropertyList readInfo(CFBundleRef bundle) {
  const CFDictionaryRef dictionary = CFBundleGetInfoDictionary(bundle);
  std::optional<PropertyList> info;
  if (dictionary != nullptr) info = valueOf(dictionary);
  return info ? std::move(*info) : PropertyList(PropertyList::Dictionary{});
}

Bundle readBundle(CFBundleRef bundle) {
  const Owned<CFURLRef> url(CFBundleCopyBundleURL(bundle));
  const Owned<CFStringRef> name(CFURLCopyLastPathComponent(url.get()));
  const Owned<CFStringRef> path(CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle));
  return {textOf(path.get()), textOf(name.get()), readInfo(bundle)};
}

}  // namespace

std::vector<Bundle> readBundleFolder(const std::string& folder) {
  std::vector<Bundle> bundles;
  const Owned<CFArrayRef> array = createBundles(folder);
  const CFIndex count = array ? CFArrayGetCount(array.get()) : 0;
  for (CFIndex i = 0; i < count; ++i) {
    // CFBundleRef points to something that can change, what an array holds cannot.
    auto* bundle =
        static_cast<CFBundleRef>(const_cast<void*>(CFArrayGetValueAtIndex(array.get(), i)));
    bundles.push_back(readBundle(bundle));
  }
  return bundles;
}

}  // namespace platform::apple
