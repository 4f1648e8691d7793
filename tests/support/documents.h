#pragma once

#include <string>
#include <string_view>

#include "keva/kevaDoc.h"

// "Input text -> output text" for tests of the tag tree and of everything that fills it.

// The text form of a document without its header line.
std::string textOf(const kevaDoc& document);

// The text form of the tag that a "/"-separated path leads to from the top tag, as it stands in its
// document; "" when there is none.
std::string textOf(const kevaDoc& document, std::string_view path);

// The raw document of a profile with one data type, whose "_items" array holds `items` (the XML of
// its elements). Fails the test when the XML is no property list.
kevaDoc rawItems(std::string_view dataType, std::string_view items);

// The same with a second data type, and so on: adds to a raw document.
void addRawItems(kevaDoc& raw, std::string_view dataType, std::string_view items);
