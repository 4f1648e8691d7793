#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace platform {

// What the XML parser lets pass and the platform's does not, checked before it sees the text: bytes
// that are not UTF-8, NUL bytes, references to entities other than the five of XML, references to
// code points that do not exist, "<data/>", which its tree does not tell from "<data></data>".
//
// Nothing for a document to refuse.
struct XmlScan {
  std::size_t length = 0;  // bytes of the document to parse, up to "</plist>" when there is one
  bool hasCdata = false;   // whether there is a CDATA section in them
};
std::optional<XmlScan> scanXml(std::string_view document);

}  // namespace platform
