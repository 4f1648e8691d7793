#include "redact/edits.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "base/text.h"
#include "machine/secretPlaces.h"

namespace redact {

namespace {

std::string cased(std::string_view digits, bool upper) {
  return upper ? toUpper(digits) : std::string(digits);
}

// Puts digits in the place of those of an address, in its own spelling.
std::string spelledAs(std::string_view original, std::string_view digits) {
  const auto isHex = [](char c) {
    return std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos;
  };
  const auto isEncoded = [original](std::size_t i) { return original.substr(i, 1) == "%"; };
  std::size_t count = 0;
  for (std::size_t i = 0; i < original.size(); i += isEncoded(i) ? 3 : 1)
    count += isHex(original[i]) ? 1 : 0;
  const bool upper = original.find_first_of("ABCDEF") != std::string_view::npos;
  const std::string now = cased(digits, upper);
  std::string spelled;
  if (count != digits.size()) {  // leading zeros were left out
    for (std::size_t i = 0; i < now.size(); i += 2)
      spelled += (i == 0 ? "" : ":") + now.substr(i, 2);
    return spelled;
  }
  std::size_t at = 0;
  for (std::size_t i = 0; i < original.size(); ++i) {
    if (isEncoded(i)) {  // "%2D"
      spelled += original.substr(i, 3);
      i += 2;
    } else {
      spelled += isHex(original[i]) ? now[at++] : original[i];
    }
  }
  return spelled;
}

bool has(std::string_view text, char c) {
  return text.find(c) != std::string_view::npos;
}

// Behind the mark that a line begins with, and behind what the format calls it: "*Soft:",
// "serial=".
std::size_t endOfName(std::string_view text, std::size_t line) {
  constexpr std::string_view kMarks = "+*~";
  const std::size_t begin = line + (has(kMarks, text[line]) ? 1 : 0);
  const std::size_t end = text.find_first_of(":=\n", begin);
  const bool isEntry = end != std::string_view::npos && text[end] != '\n';
  const bool isName = isEntry && machine::isSnapshotName(text.substr(begin, end - begin));
  return isName ? end + 1 : begin;
}

}  // namespace

const Range* rangeAround(const std::vector<Range>& ranges, std::size_t begin, std::size_t end) {
  const auto after = std::ranges::upper_bound(ranges, begin, {}, &Range::first);
  const bool lies = after != ranges.begin() && std::prev(after)->second >= end;
  return lies ? &*std::prev(after) : nullptr;
}

bool overlaps(const std::vector<Range>& ranges, std::size_t begin, std::size_t end) {
  const auto next = std::ranges::lower_bound(ranges, end, {}, &Range::first);
  return next != ranges.begin() && std::prev(next)->second > begin;
}

void Edits::add(Edit edit) {
  edits_.push_back(std::move(edit));
  if (edits_.size() < thinAt_) return;
  keepLongest();
  thinAt_ = std::max(thinAt_, 2 * edits_.size());
}

void Edits::keepLongest() {
  std::ranges::stable_sort(edits_, [](const Edit& a, const Edit& b) {
    return a.begin != b.begin ? a.begin < b.begin : a.end > b.end;
  });
  const auto isSamePlace = [](const Edit& a, const Edit& b) { return a.begin == b.begin; };
  edits_.erase(std::unique(edits_.begin(), edits_.end(), isSamePlace), edits_.end());
}

std::vector<Edit> Edits::take() {
  keepLongest();
  std::vector<Edit> apart;
  for (Edit& edit : edits_) {
    if (apart.empty() || edit.begin >= apart.back().end) apart.push_back(std::move(edit));
  }
  edits_.clear();
  return apart;
}

void addElementNames(std::string_view text, std::vector<Range>& ranges) {
  constexpr std::string_view kNames[] = {"?xml", "!DOCTYPE", "plist", "array", "dict",
                                         "key",  "string",   "data",  "date",  "integer",
                                         "real", "true",     "false"};
  constexpr std::size_t kLongest = 8;  // of these names
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
    const std::size_t mark = at;
    if (text.substr(++at).starts_with('/')) ++at;
    const std::string_view begin = text.substr(at, kLongest + 1);
    const std::string_view name = begin.substr(0, begin.find_first_of("/> \t\r\n"));
    if (std::ranges::find(kNames, name) == std::end(kNames)) continue;
    ranges.emplace_back(mark, at + name.size());
    const std::size_t end = text.find_first_of("<>", at);
    if (end < text.size() && text[end] == '>') ranges.emplace_back(end, end + 1);
  }
}

std::vector<Edit> withinLines(std::string_view text, std::vector<Edit> edits) {
  std::vector<Edit> kept;
  for (std::size_t next = 0; next < edits.size();) {
    const std::size_t line = text.rfind('\n', edits[next].begin) + 1;
    const std::size_t end = std::min(text.find('\n', line), text.size());
    const std::size_t first = next;
    bool isEntry = false;
    std::size_t at = line;
    for (; next < edits.size() && edits[next].begin < end; at = edits[next++].end)
      isEntry = isEntry || has(text.substr(at, edits[next].begin - at), '=');
    isEntry = isEntry || has(text.substr(at, end - at), '=');
    if (line == 0) continue;
    const std::size_t name = endOfName(text, line);
    isEntry = isEntry || text[name - 1] == '=';
    for (Edit& edit : std::span(edits).subspan(first, next - first)) {
      edit.begin = std::max(edit.begin, name);
      if (edit.begin >= edit.end) continue;
      const std::size_t equals = isEntry ? end : text.substr(0, end).find('=', edit.begin);
      if (equals < edit.end) {
        isEntry = true;
        if (edit.begin < equals) {
          kept.push_back(edit);
          kept.back().end = equals;
        }
        edit.begin = equals + 1;
      }
      if (edit.begin < edit.end) kept.push_back(std::move(edit));
    }
  }
  return kept;
}

std::string rendered(const Secret& secret, std::string_view original) {
  const bool digits = secret.kind == Kind::HardwareAddress || secret.kind == Kind::Uuid;
  if (digits) return spelledAs(original, secret.token);
  std::string token = secret.token;
  // With a blank it is no name on a network, as it was none.
  if (secret.kind == Kind::Host && original.find(' ') != std::string_view::npos)
    std::ranges::replace(token, '-', ' ');
  return token;
}

std::string shownToken(const Secret& secret) {
  return rendered(secret, secret.text);
}

}  // namespace redact
