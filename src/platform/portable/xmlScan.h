#pragma once

#include <optional>
#include <string_view>

namespace platform {

// What the XML parser lets pass and the platform's does not, checked before it sees the text: bytes
// that are not UTF-8, NUL bytes, references to entities other than the five of XML, references to
// code points that do not exist.
//
// Returns the part of the document to parse, which ends with "</plist>" when there is one; nothing
// for a document to refuse.
std::optional<std::string_view> scanXml(std::string_view document);

}  // namespace platform
