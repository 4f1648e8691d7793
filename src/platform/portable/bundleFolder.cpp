#include "platform/portable/bundleFolder.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/portable/fileText.h"
#include "platform/portable/propertyListReader.h"

namespace platform {

namespace {

namespace fs = std::filesystem;

// The information dictionary, from the first of the places where the platform looks for it.
PropertyList readInfo(const fs::path& bundle) {
  for (const char* place : {"Contents", ".", "Resources", "Support Files"}) {
    const fs::path path = bundle / place / "Info.plist";
    std::error_code error;
    if (!fs::is_regular_file(path, error)) continue;  // a pipe would keep the scan waiting
    const std::optional<std::string> document = readFileText(path);
    if (!document) continue;
    std::optional<PropertyList> info = readPropertyList(*document);
    if (info && info->dictionary() != nullptr) return std::move(*info);
    break;
  }
  return PropertyList(PropertyList::Dictionary{});
}

}  // namespace

std::vector<Bundle> readBundleFolder(const std::string& folder) {
  std::vector<Bundle> bundles;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unreadable;
    if (!entry->is_directory(unreadable)) continue;
    const fs::path& path = entry->path();
    bundles.push_back({path.string(), path.filename().string(), readInfo(path)});
  }
  return bundles;
}

}  // namespace platform
