#pragma once

#include <string>
#include <string_view>

struct sqlite3;

namespace fleet {

// A text for each version, such that the texts are in the order of the versions: 9.1 before 17.5
// before 17.10. Only the numbers in a version count, from left to right; where one ends first it is
// the older one, so that 17 comes before 17.0.
std::string versionKey(std::string_view version);

// Gives a connection the SQL function version_key(text); null has none. False when the library
// refuses.
bool offerVersionKey(sqlite3* connection);

}  // namespace fleet
