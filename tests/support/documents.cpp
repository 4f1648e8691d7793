#include "support/documents.h"

#include <gtest/gtest.h>

#include "collect/plistToTags.h"
#include "support/fakeHost.h"

std::string textOf(const kevaDoc& document) {
  constexpr std::string_view kHeader = "\xEF\xBB\xBF?keva\n";
  std::string buffer(document.textSize() + 1, '\0');
  buffer.resize(document.writeText(buffer.data(), 0, false, false));
  return buffer.substr(kHeader.size());
}

std::string textOf(const kevaDoc& document, std::string_view path) {
  const Tag* tag = &document.top();
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    tag = tag->findChild(path.substr(0, slash));
    if (tag == nullptr) return "";
    path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
  }
  std::string buffer(tag->textSize(false) + 1, '\0');
  buffer.resize(tag->writeText(buffer.data(), 0, false, false));
  return buffer;
}

kevaDoc rawItems(std::string_view dataType, std::string_view items) {
  kevaDoc raw(true, "Macintosh");
  addRawItems(raw, dataType, items);
  return raw;
}

void addRawItems(kevaDoc& raw, std::string_view dataType, std::string_view items) {
  FakeHost host;
  std::string xml = "<array><dict><key>_dataType</key><string>";
  xml.append(dataType).append("</string><key>_items</key><array>");
  xml.append(items).append("</array></dict></array>");
  const auto profile = host.parsePropertyList(xml);
  ASSERT_TRUE(profile.has_value()) << xml;
  convertProfile(host, *profile, raw);
}
