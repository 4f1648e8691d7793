#include "huxread/header.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <optional>

#include "base/formatString.h"

namespace huxread {

namespace {

constexpr const char* kTypeNames[] = {"assetinfo", "snapshot", "customdata"};

// "[name]" and the entries below it.
struct Group {
  std::string_view name;
  std::size_t line;  // in the header text, from 1
  std::map<std::string_view, std::string_view> entries;
};

Result<std::vector<Group>> splitGroups(std::string_view text) {
  std::vector<Group> groups;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) {
      return Error{formatString("header: line %zu is cut off", number)};
    }
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    if (line.starts_with('[') && line.ends_with(']')) {
      groups.push_back({line.substr(1, line.size() - 2), number, {}});
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || groups.empty()) {
      return Error{formatString("header: line %zu is no entry of a group", number)};
    }
    auto& entries = groups.back().entries;
    if (!entries.emplace(line.substr(0, equals), line.substr(equals + 1)).second) {
      return Error{formatString("header: line %zu repeats a key of its group", number)};
    }
  }
  return groups;
}

std::optional<std::uint32_t> parseNumber(std::string_view digits) {
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [rest, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

// `title` names the group in a message: "header", "section 1".
Result<std::uint32_t> numberEntry(const Group& group, const std::string& title, const char* key) {
  const auto entry = group.entries.find(key);
  if (entry == group.entries.end()) {
    return Error{formatString("%s: %s is missing", title.c_str(), key)};
  }
  const std::optional<std::uint32_t> number = parseNumber(entry->second);
  if (!number) {
    return Error{formatString("%s: %s is no number from 0 to %u", title.c_str(), key, UINT32_MAX)};
  }
  return *number;
}

std::string textEntry(const Group& group, const char* key) {
  const auto entry = group.entries.find(key);
  return entry == group.entries.end() ? "" : std::string(entry->second);
}

// The number of sections: [H] stands first and states it.
Result<std::uint32_t> parseCount(const std::vector<Group>& groups) {
  if (groups.empty() || groups.front().name != "H") return Error{"header: does not begin with [H]"};
  const Result<std::uint32_t> snapshots = numberEntry(groups.front(), "header", "snapshotcount");
  if (!snapshots) return snapshots.error();
  return numberEntry(groups.front(), "header", "count");
}

Result<Section> parseSection(const Group& group, std::uint32_t count) {
  const std::optional<std::uint32_t> number = parseNumber(group.name);
  if (!number) {
    return Error{formatString("header: line %zu is no section number", group.line)};
  }
  const std::string title = formatString("section %u", *number);
  if (*number >= count) {
    return Error{formatString("%s: the header counts %u sections", title.c_str(), count)};
  }
  const Result<std::uint32_t> offset = numberEntry(group, title, "offset");
  if (!offset) return offset.error();
  const Result<std::uint32_t> length = numberEntry(group, title, "length");
  if (!length) return length.error();
  const std::string type = textEntry(group, "type");
  const auto* const name = std::ranges::find(kTypeNames, type);
  if (name == std::end(kTypeNames)) {
    return Error{title + (type.empty() ? ": type is missing" : ": type is unknown")};
  }
  return Section{*number, static_cast<SectionType>(name - std::begin(kTypeNames)), *offset, *length,
                 textEntry(group, "timestamp")};
}

}  // namespace

const char* typeName(SectionType type) {
  return kTypeNames[static_cast<std::size_t>(type)];
}

Result<std::vector<Section>> parseHeader(std::string_view text) {
  const Result<std::vector<Group>> groups = splitGroups(text);
  if (!groups) return groups.error();
  const Result<std::uint32_t> count = parseCount(*groups);
  if (!count) return count.error();
  std::vector<Section> sections;
  for (auto group = groups->begin() + 1; group != groups->end(); ++group) {
    Result<Section> section = parseSection(*group, *count);
    if (!section) return section.error();
    sections.push_back(std::move(*section));
  }
  std::ranges::sort(sections, {}, &Section::number);
  const auto twin = std::ranges::adjacent_find(sections, {}, &Section::number);
  if (twin != sections.end()) {
    return Error{formatString("section %u: the header lists it twice", twin->number)};
  }
  return sections;
}

}  // namespace huxread
