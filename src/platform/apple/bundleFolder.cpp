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

PropertyList readInfo(CFBundleRef bundle, std::span<const std::string_view> keys) {
  PropertyList::Dictionary info;
  const CFDictionaryRef dictionary = CFBundleGetInfoDictionary(bundle);
  if (dictionary == nullptr) return info;
  for (const std::string_view key : keys) {
    const CFTypeRef value = CFDictionaryGetValue(dictionary, makeString(key).get());
    if (value == nullptr) continue;
    if (std::optional<PropertyList> scalar = scalarOf(value)) {
      info.emplace_back(key, std::move(*scalar));
    }
  }
  return info;
}

Bundle readBundle(CFBundleRef bundle, std::span<const std::string_view> keys) {
  const Owned<CFURLRef> url(CFBundleCopyBundleURL(bundle));
  const Owned<CFStringRef> name(CFURLCopyLastPathComponent(url.get()));
  const Owned<CFStringRef> path(CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle));
  return {textOf(path.get()), textOf(name.get()), readInfo(bundle, keys)};
}

}  // namespace

std::vector<Bundle> readBundleFolder(const std::string& folder,
                                     std::span<const std::string_view> keys) {
  std::vector<Bundle> bundles;
  const Owned<CFArrayRef> array = createBundles(folder);
  const CFIndex count = array ? CFArrayGetCount(array.get()) : 0;
  for (CFIndex i = 0; i < count; ++i) {
    // CFBundleRef points to something that can change, what an array holds cannot.
    auto* bundle =
        static_cast<CFBundleRef>(const_cast<void*>(CFArrayGetValueAtIndex(array.get(), i)));
    bundles.push_back(readBundle(bundle, keys));
  }
  return bundles;
}

}  // namespace platform::apple
