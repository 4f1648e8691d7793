#include "fleet/versionOrder.h"

#include <sqlite3.h>

#include <algorithm>

#include "base/digits.h"

namespace fleet {

namespace {

void versionKeyFunction(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
  if (text == nullptr) return;  // of null the result is null
  const std::string key =
      versionKey({text, static_cast<std::size_t>(sqlite3_value_bytes(arguments[0]))});
  sqlite3_result_text(context, key.data(), static_cast<int>(key.size()), SQLITE_TRANSIENT);
}

}  // namespace

// Each number is its digits behind a letter that says how many they are.
std::string versionKey(std::string_view version) {
  constexpr std::size_t kMostDigits = 25;  // 'A' to 'Z'; what is beyond is no number of a version
  std::string key;
  const char* const end = version.data() + version.size();
  for (const char* at = std::find_if(version.data(), end, isDigit); at != end;
       at = std::find_if(at, end, isDigit)) {
    const char* const last = std::find_if_not(at, end, isDigit);
    const char* const first = std::find_if(at, last, [](char c) { return c != '0'; });
    const std::size_t digits = std::min(static_cast<std::size_t>(last - first), kMostDigits);
    key += static_cast<char>('A' + digits);
    key.append(first, digits);
    at = last;
  }
  return key;
}

bool offerVersionKey(sqlite3* connection) {
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  return sqlite3_create_function_v2(connection, "version_key", 1, kFlags, nullptr,
                                    versionKeyFunction, nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace fleet
