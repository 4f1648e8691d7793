#pragma once

#include <functional>
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
// kind of apostrophe and of blank and as a part of an URL, with accents composed,
// decomposed, left out and written out ("oe"); names of machines as the network has them; serial
// numbers without separators and, of displays, in hexadecimal. What the network would have of a
// machine's name is left out where common words alone are left of it; only names of machines ask.
using IsCommon = std::function<bool(const std::string& word)>;
std::vector<std::string> spellingsOf(Kind kind, std::string_view text, const IsCommon& isCommon);

// Names within a full name or within the name of a machine, by which it can be recognised:
// "Mara O'Lindgrove" has "mara", "lindgrove", "o'lindgrove", "mlindgrove". None of three letters:
// words of other things begin to be among them. Of an address of mail those before the "@".
std::vector<std::string> partsOf(Kind kind, std::string_view text);

}  // namespace redact
