#pragma once

#include <optional>
#include <string>

#include "keva/kevaDoc.h"
#include "platform/host.h"

// "User-accounts": the users who have a folder in /Users and a record with a home folder.
void PostProcessUserAccounts(kevaDoc& snapshot, platform::Host& host);

// A user's record; what it does not say is missing.
struct UserRecord {
  std::string name;
  std::optional<std::string> fullName;
  std::optional<std::string> group;
  std::optional<std::string> id;
  std::optional<std::string> shell;
};

// The output of "dscl . -read /users/NAME", which lists the attributes in alphabetical order.
// Nothing when it is no record of a user with a home folder.
std::optional<UserRecord> parseUserRecord(const std::string& output);
