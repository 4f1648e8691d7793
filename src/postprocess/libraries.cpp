#include "postprocess/libraries.h"

#include <utility>

#include "base/formatString.h"
#include "base/text.h"
#include "collect/plistToTags.h"
#include "postprocess/mapping.h"
#include "postprocess/sortedChildren.h"

namespace {

constexpr std::string_view kVersion = "CFBundleShortVersionString";
constexpr std::string_view kInfo = "CFBundleGetInfoString";
constexpr std::string_view kDescription = "WebPluginDescription";

void writeLibrary(kevaDoc& snapshot, platform::Host& host, const platform::Bundle& bundle,
                  const std::string& group) {
  kevaDoc document(true, "Version");
  if (const auto* dictionary = bundle.info.dictionary()) {
    convertDictionary(host, *dictionary, "", document);
  }
  const Item info(document.top());
  const SharedText& version = info.text(kVersion);
  const std::string name = bundle.name.substr(0, bundle.name.find('.'));
  std::string tagName = formatString("library:%s %s", name.c_str(), std::string(version).c_str());
  TrimChars(tagName, " \n\r", kTrimBoth);

  Tag& tag =
      *branch(snapshot, {"Libraries"}).setChild(normalizedText(std::move(tagName)), TagValue(name));
  tag.setAttribute("path", TagValue(bundle.path));
  if (!version.empty()) tag.setAttribute("version", TagValue(version));
  copyPresent(info, kInfo, tag, "descr");
  copyPresent(info, kDescription, tag, "descr");
  tag.setAttribute("group", TagValue(group));
}

}  // namespace

void scanBundles(kevaDoc& snapshot, platform::Host& host, const std::string& folder,
                 const std::string& group) {
  constexpr std::string_view kKeys[] = {kVersion, kInfo, kDescription};
  for (const platform::Bundle& bundle : host.bundles(folder, kKeys)) {
    writeLibrary(snapshot, host, bundle, group);
  }
}

void PostProcessLibraries(kevaDoc& snapshot, platform::Host& host) {
  scanBundles(snapshot, host, "/Library/Internet Plug-Ins", "InternetPlug-Ins");
  if (Tag* libraries = snapshot.top().findChild("Libraries")) sortChildrenByValue(*libraries);
}
