#include "postprocess/userAccounts.h"

#include <algorithm>
#include <string_view>

#include "base/formatString.h"
#include "base/text.h"
#include "base/utf8.h"
#include "collect/commandRunner.h"
#include "postprocess/mapping.h"

namespace {

constexpr std::int32_t kChunkSize = 100;  // bytes, of both commands

// The text between a label and the next `end`, trimmed; nothing when one of them is missing.
std::optional<std::string> textBetween(std::string_view record, std::string_view label,
                                       std::string_view end) {
  const std::size_t found = record.find(label);
  if (found == std::string_view::npos) return std::nullopt;
  const std::size_t start = found + label.size();
  const std::size_t stop = record.find(end, start);
  if (stop == std::string_view::npos) return std::nullopt;
  std::string text(record.substr(start, stop - start));
  return TrimChars(text, "\n\t ", kTrimBoth);
}

// A name goes into a command between double quotes: one that holds a character which the shell
// interprets there is no account's. Nor is one that no folder has: a listing that is nothing but
// noise would start a command for each of its lines.
bool isAccountName(std::string_view name) {
  constexpr std::size_t kLongest = 255;  // bytes
  const bool control = std::ranges::any_of(name, [](char c) { return c >= '\0' && c < ' '; });
  return !name.empty() && name.size() <= kLongest && !control &&
         name.find_first_of("\"$`\\") == std::string_view::npos && validUtf8(name) == name;
}

void writeAccount(const std::string& folder, platform::Host& host, Tag& accounts) {
  if (!isAccountName(folder)) return;
  std::uint32_t length = 0;
  const std::string output = runCommand(
      host, formatString("dscl . -read \"/users/%s\"", folder.c_str()), length, kChunkSize);
  const std::optional<UserRecord> record = parseUserRecord(output);
  if (!record) return;
  Tag& account =
      *accounts.setChild(normalizedText("usr-acc:" + record->name), TagValue(record->name));
  const auto set = [&account](const char* attribute, const std::optional<std::string>& text) {
    setPresent(account, attribute, text ? TagValue(*text) : TagValue());
  };
  set("fullname", record->fullName);
  set("group", record->group);
  set("id", record->id);
  set("shell", record->shell);
  account.setAttribute("hdir", TagValue("/users/" + folder));
  account.setAttribute("is-system-user", TagValue("0"));
}

}  // namespace

void PostProcessUserAccounts(kevaDoc& snapshot, platform::Host& host) {
  const std::string listing = runCommandUntilItPrints(host, "ls -1 /Users/", kChunkSize);
  std::size_t start = 0;
  for (std::size_t end = listing.find('\n'); end != std::string::npos;
       end = listing.find('\n', start)) {
    writeAccount(listing.substr(start, end - start), host, branch(snapshot, {"User-accounts"}));
    start = end + 1;
  }
}

std::optional<UserRecord> parseUserRecord(const std::string& output) {
  const std::size_t home = output.find("\nNFSHomeDirectory:");
  if (home == std::string::npos) return std::nullopt;
  const std::string record = output.substr(home) + "\n";  // the last line may lack its end
  const std::optional<std::string> name = textBetween(record, "RecordName:", "RecordType:");
  if (!name) return std::nullopt;
  return UserRecord{*name, textBetween(record, "RealName:", "RecordName:"),
                    textBetween(record, "PrimaryGroupID:", "\n"),
                    textBetween(record, "UniqueID:", "\n"),
                    textBetween(record, "UserShell:", "\n")};
}
