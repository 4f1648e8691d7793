#pragma once

#include <string>
#include <string_view>

// Elements of a property list from "{key=value; key=value}; {...}". A value is a dictionary {...},
// an array [value; value], an integer #7, XML, or else a text; blanks around it do not belong to
// it.
std::string elementsOf(std::string_view items);
