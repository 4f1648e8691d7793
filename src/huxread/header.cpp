#include "huxread/header.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <optional>
#include <span>

#include "base/formatString.h"

namespace huxread {

namespace {

constexpr const char* kTypeNames[] = {"assetinfo", "snapshot", "customdata", "unknown"};
constexpr std::string_view kHeadKeys[] = {"count", "snapshotcount"};
constexpr std::string_view kSectionKeys[] = {"offset",    "length",   "type",
                                             "timestamp", "snaptype", "ID"};

struct Entry {
  std::string_view value;
  std::size_t line;  // in the header text, from 1
};

// "[name]" and the entries below it.
struct Group {
  std::string_view name;
  std::size_t line;
  std::map<std::string_view, Entry> entries;
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
    if (!entries.emplace(line.substr(0, equals), Entry{line.substr(equals + 1), number}).second) {
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
  const std::optional<std::uint32_t> number = parseNumber(entry->second.value);
  if (!number) {
    return Error{formatString("%s: %s is no number from 0 to %u", title.c_str(), key, UINT32_MAX)};
  }
  return *number;
}

std::string textEntry(const Group& group, const char* key) {
  const auto entry = group.entries.find(key);
  return entry == group.entries.end() ? "" : std::string(entry->second.value);
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
  const auto* const unknown = std::end(kTypeNames) - 1;
  const auto* const name = std::find(std::begin(kTypeNames), unknown, type);
  return Section{*number, static_cast<SectionType>(name - std::begin(kTypeNames)), *offset, *length,
                 textEntry(group, "timestamp")};
}

void remarkUnknownKeys(const Group& group, std::span<const std::string_view> known,
                       std::vector<std::string>& remarks) {
  for (const auto& [key, entry] : group.entries) {
    if (std::ranges::find(known, key) != known.end()) continue;
    remarks.push_back(formatString("header: the key of line %zu is not known", entry.line));
  }
}

// What the sections lack of what the header counts.
void remarkMissing(const std::vector<Section>& sections, std::uint32_t count,
                   std::uint32_t snapshotCount, std::vector<std::string>& remarks) {
  std::uint32_t next = 0;
  const auto remarkBefore = [&](std::uint32_t number) {
    if (number == next + 1) {
      remarks.push_back(formatString("section %u: counted but not listed", next));
    } else if (number > next) {
      remarks.push_back(
          formatString("sections %u to %u: counted but not listed", next, number - 1));
    }
  };
  for (const Section& section : sections) {
    remarkBefore(section.number);
    next = section.number + 1;
  }
  remarkBefore(count);
  const auto listed = std::ranges::count(sections, SectionType::Snapshot, &Section::type);
  if (listed == snapshotCount) return;
  remarks.push_back(formatString("header: counts %u documents of type snapshot and lists %td",
                                 snapshotCount, listed));
}

}  // namespace

const char* typeName(SectionType type) {
  return kTypeNames[static_cast<std::size_t>(type)];
}

Result<Header> parseHeader(std::string_view text) {
  const Result<std::vector<Group>> groups = splitGroups(text);
  if (!groups) return groups.error();
  if (groups->empty() || groups->front().name != "H") {
    return Error{"header: does not begin with [H]"};
  }
  const Group& head = groups->front();
  const Result<std::uint32_t> snapshotCount = numberEntry(head, "header", "snapshotcount");
  if (!snapshotCount) return snapshotCount.error();
  const Result<std::uint32_t> count = numberEntry(head, "header", "count");
  if (!count) return count.error();

  Header header;
  remarkUnknownKeys(head, kHeadKeys, header.remarks);
  for (auto group = groups->begin() + 1; group != groups->end(); ++group) {
    Result<Section> section = parseSection(*group, *count);
    if (!section) return section.error();
    remarkUnknownKeys(*group, kSectionKeys, header.remarks);
    header.sections.push_back(std::move(*section));
  }
  std::ranges::sort(header.sections, {}, &Section::number);
  const auto twin = std::ranges::adjacent_find(header.sections, {}, &Section::number);
  if (twin != header.sections.end()) {
    return Error{formatString("section %u: the header lists it twice", twin->number)};
  }
  remarkMissing(header.sections, *count, *snapshotCount, header.remarks);
  return header;
}

}  // namespace huxread
