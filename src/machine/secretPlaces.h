#pragma once

#include <span>
#include <string_view>

#include "machine/schema.h"

// Where secrets stand in the documents of a file, by what stands around them: also such as no
// column holds, and such as are too common a word to be looked for anywhere else.

namespace machine {

// A text in a document. "" as a part of a rule fits anything.
struct SecretPlace {
  std::string_view section;  // of the profiler's document the data type, of an inventory the tag:
                             // "Printer" of "Printer:1"
  std::string_view key;    // of the text; of an inventory the attribute, "" for the tag's own value
  std::string_view table;  // of the schema: whose secret it is
  Secret secret;
  std::string_view parent = {};  // of the profiler's document the key of what is around the text
};

// Both give null when the place holds no secret.
const SecretPlace* findProfiledSecret(std::string_view section, std::string_view parent,
                                      std::string_view key);
const SecretPlace* findSnapshotSecret(std::string_view tag, std::string_view attribute);

// Whether a tag or an attribute of an inventory is called so, up to its ":": "Soft", "mac-address".
bool isSnapshotName(std::string_view name);

// Whether a key of a dictionary is what somebody called a device. Structure has keys with "_" in
// them.
bool isProfiledName(std::string_view section, std::string_view key);

// Whether texts of that key, of either kind of document, state versions, which can look like
// network addresses.
bool statesVersions(std::string_view key);

// Whether it is the number of a display in hexadecimal, or the display's EDID block.
bool isDisplayNumber(std::string_view key);
bool isDisplayBlock(std::string_view key);

}  // namespace machine
