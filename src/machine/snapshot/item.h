#pragma once

#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>

#include "huxread/document.h"
#include "machine/description.h"
#include "machine/mapping.h"

// Reading the tags of a snapshot: their attributes are texts, and a name stands once in a tag.

namespace machine::snapshot {

using huxread::TagView;

// --- tags

// The tag that a path of names leads to; nothing when one of them is missing.
std::optional<TagView> find(const TagView& top, std::initializer_list<std::string_view> path);

// Hands over the children whose names begin with `prefix` ("Memory-slot:"), in order.
template <typename Take>
void forEach(const TagView& branch, std::string_view prefix, const Take& take) {
  for (auto child = branch.firstChild(); child; child = child->nextSibling()) {
    if (child->name().starts_with(prefix)) take(*child);
  }
}

// A property of an attribute; nothing when one of the two is missing.
std::optional<std::string_view> propertyOf(const TagView& tag, std::string_view attribute,
                                           std::string_view key);

// Bytes that an attribute's "base-value" tells. Nothing when it is no number or negative, and when
// it is no multiple of 512: disks and volumes consist of such blocks, so that was worked out from a
// rounded text.
Value blocks(const TagView& tag, std::string_view attribute);

// --- tables

using Convert = Value (*)(std::string_view text);
using Line = NamedCell<Convert>;  // of a mapping table, for cells() (machine/mapping.h)

// See mapping.h.
void write(std::span<const Cell<Convert>> cells, const TagView& tag, Row& row);

// Adds a row to the table.
Row& addRow(TableData& table, std::size_t place);

// The row of the table "machine", which is there from then on.
Row& machineRow(Description& machine);

// --- conversions

// See textValue and statedValue (machine/cleanText.h).
Value text(std::string_view text);

// See statedValue there.
Value stated(std::string_view text);

// A text with the profiler's tokens as words (machine/words.h).
Value word(std::string_view text);

// A whole number; `count` knows none that is not above 0.
Value integer(std::string_view text);
Value count(std::string_view text);

// "1" is yes, "0" no, all else nothing.
Value flag(std::string_view text);

// "2.5" as a number.
Value real(std::string_view text);

}  // namespace machine::snapshot
