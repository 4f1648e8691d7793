#include "platform/portable/bundleFolder.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "base/utf8.h"
#include "platform/portable/fileText.h"
#include "platform/portable/propertyListReader.h"

namespace platform {

namespace fs = std::filesystem;

PropertyList readBundleInfo(const std::string& path) {
  // The places where the platform looks for it, in its order.
  for (const char* place : {"Contents", "Resources", "Support Files", "."}) {
    const fs::path file = fs::path(path) / place / "Info.plist";
    std::error_code error;
    if (!fs::is_regular_file(file, error)) continue;  // a pipe would keep the scan waiting
    std::optional<std::string> document = readFileText(file);
    if (!document) continue;
    std::optional<PropertyList> info = readPropertyList(std::move(*document));
    if (info && info->dictionary() != nullptr) return std::move(*info);
    break;
  }
  return PropertyList(PropertyList::Dictionary{});
}

PropertyList scalarsAt(std::span<const std::string_view> keys, const PropertyList& dictionary) {
  PropertyList::Dictionary scalars;
  for (const std::string_view key : keys) {
    const PropertyList* value = dictionary.find(key);
    if (value == nullptr || value->array() != nullptr || value->dictionary() != nullptr) continue;
    scalars.emplace_back(key, *value);
  }
  return scalars;
}

std::vector<Bundle> readBundleFolder(const std::string& folder,
                                     std::span<const std::string_view> keys) {
  std::vector<Bundle> bundles;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unreadable;
    if (!entry->is_directory(unreadable)) continue;
    const fs::path& path = entry->path();
    bundles.push_back({validUtf8(path.string()), validUtf8(path.filename().string()),
                       scalarsAt(keys, readBundleInfo(path.string()))});
  }
  return bundles;
}

}  // namespace platform
