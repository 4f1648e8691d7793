#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "machine/mapping.h"
#include "platform/propertyList.h"

// Reading the items of the profiler's document: dictionaries whose keys and values are its own
// tokens and texts. A key that is missing, or whose value is of a kind that says nothing here,
// reads as nothing.

namespace machine::profiler {

using platform::PropertyList;

// --- single keys

// The text as the document has it; "" for nothing and for what is no text.
std::string_view textIn(const PropertyList& item, std::string_view key);

// A number, or a text that is one.
std::optional<std::int64_t> integerIn(const PropertyList& item, std::string_view key);

// See the conversion `flag`.
std::optional<bool> flagIn(const PropertyList& item, std::string_view key);

// The elements of an array; none for anything else.
std::span<const PropertyList> listIn(const PropertyList& item, std::string_view key);

// The elements of the item's list "_items", of theirs and so on, each one with what it stands in
// and before what stands in it. No deeper than parsed lists are nested (Host::kMaxNesting).
void forEachBelow(
    const PropertyList& item,
    const std::function<void(const PropertyList& below, const PropertyList& parent)>& take);

// --- tables

using Convert = Value (*)(const PropertyList& value);
using Line = NamedCell<Convert>;  // of a mapping table, for cells() (machine/mapping.h)

// See mapping.h.
void write(std::span<const Cell<Convert>> cells, const PropertyList& item, Row& row);

// Sets what the row does not know from another one of its table that does.
void complete(Row& row, const Row& other);

// --- conversions

// A text without the blanks around it, a number as its digits; nothing for what is empty then.
Value text(const PropertyList& value);

// The same; nothing for a text that stands in for a missing one (machine/cleanText.h).
Value stated(const PropertyList& value);

// A text with the profiler's tokens as words (machine/words.h).
Value word(const PropertyList& value);

// The texts of an array, or one text, with ", " between them.
Value joined(const PropertyList& value);

// A hardware address in the tables' notation: "F8-4D-89-00-11-22".
Value hardwareAddress(const PropertyList& value);

// A whole number, also in a text that is nothing else.
Value integer(const PropertyList& value);

// A boolean, 0 or 1, or a text that ends in a word for yes or no, in any case: "yes", "TRUE",
// "spdisplays_yes", "integrity_enabled", "attrib_Off".
Value flag(const PropertyList& value);

// The day of a date, "2024-05-01", in UTC; nothing outside the years 1 to 9999.
Value day(const PropertyList& value);

// Texts with sizes and speeds (machine/quantity.h): binary units of memory and caches as whole
// megabytes and kilobytes, decimal units of disks as bytes, speeds as MHz.
Value megabytes(const PropertyList& value);
Value kilobytes(const PropertyList& value);
Value diskBytes(const PropertyList& value);
Value clock(const PropertyList& value);

}  // namespace machine::profiler
