#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "redact/kinds.h"

namespace redact {

// The words of a text: letters and digits that stand together, in small letters; what belongs to an
// apostrophe ("'s") is left out.
std::vector<std::string> wordsOf(std::string_view text);

// Every way in which a secret may be written in a document, in small letters, itself among them:
// addresses and UUIDs without separators (those with any are found by their shape); names with each
// kind of apostrophe and of blank, as XML and as a part of an URL, with accents composed,
// decomposed and left out; names of machines as the network has them; serial numbers without
// separators and, of displays, in hexadecimal.
std::vector<std::string> spellingsOf(Kind kind, std::string_view text);

// Names within a full name or within the name of a machine, by which it can be recognised:
// "Mara Lindgrove" has "mara", "lindgrove", "mlindgrove".
std::vector<std::string> partsOf(Kind kind, std::string_view text);

}  // namespace redact
