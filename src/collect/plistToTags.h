#pragma once

#include <string>
#include <string_view>

#include "keva/kevaDoc.h"
#include "platform/host.h"
#include "platform/propertyList.h"

// Writes a property list into a tag document, one attribute for each text, date and number, at a
// path made of the keys that lead to it. Elements of an array stand at "item0", "item1" and so on.
// Dates become long time stamps (keva/timestamp.h); booleans and data are left out, and so are
// arrays and dictionaries without content. The host is asked for the texts of dates alone.
//
// The list is taken apart: move it in. Texts stay where they are, and share their bytes with the
// list.
//
// Property lists are at most Host::kMaxNesting deep; a value whose path exceeds the limits of
// Tag::setPath is left out.

// The root array of a profile: one dictionary for each data type, below the document's top tag. The
// data types of logs and fonts are left out; of a data type's own keys "_dataType", "_detailLevel"
// and "_properties" are.
void convertProfile(platform::Host& host, platform::PropertyList root, kevaDoc& document);

// One level of a nested dictionary at `path` ("" for attributes of the document's top tag).
void convertDictionary(platform::Host& host, platform::PropertyList::Dictionary dictionary,
                       const std::string& path, kevaDoc& document);

void convertArray(platform::Host& host, platform::PropertyList::Array array,
                  const std::string& path, kevaDoc& document);

// A dictionary of texts as a numbered list: entry i becomes "item<i>" with "_name" (the key) and
// "value". An entry that is no text is left out but keeps its number.
void convertNamedValues(platform::Host& host, platform::PropertyList::Dictionary dictionary,
                        const std::string& path, kevaDoc& document);

// A key as it stands in a path: apostrophe, blank, "/", ",", and the typographic quotation marks
// U+2018, U+2019 and U+201B become "_", line ends are those of a text (TagValue::setText).
SharedText sanitizeKey(SharedText key);
