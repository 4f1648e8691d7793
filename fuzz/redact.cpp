#include "redact/redact.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <sstream>
#include <vector>

#include "base/digits.h"
#include "fuzz/fuzzers.h"
#include "fuzz/profileNotation.h"
#include "huxread/check.h"
#include "huxread/document.h"
#include "huxread/handmade.h"
#include "machine/describe.h"
#include "machine/secretPlaces.h"
#include "redact/secrets.h"
#include "redact/walk.h"
#include "support/fakeHost.h"

using fuzz::escaped;
using fuzz::expect;
using huxread::Container;
using redact::Kind;

namespace {

// The lines of an inventory with what stands around them; a text that begins one is left as it is.
std::string inventoryOf(const std::string& lines) {
  if (lines.starts_with(huxread::Document::kFirstLine)) return lines;
  std::string text = std::string(huxread::Document::kFirstLine) + "+Snapshot=\n" + lines;
  if (!text.ends_with('\n')) text += '\n';
  int open = 0;
  for (std::size_t at = 0; at != std::string::npos; at = text.find('\n', at + 1)) {
    if (text.compare(at, 2, "\n+") == 0) ++open;
    if (text.compare(at, 3, "\n-\n") == 0) --open;
  }
  for (; open > 0; --open) text += "-\n";
  return text;
}

bool canBeRead(const Container& file, FakeHost& host) {
  const auto machine = machine::describe(file, host);
  return machine && !machine->lacksItems() &&
         std::ranges::none_of(huxread::check(file), [](const huxread::Problem& problem) {
           return problem.kind == huxread::Problem::Kind::Text;
         });
}

struct Value {
  std::optional<Kind> kind;  // of the secret that stands there
  std::string text;
};

// Whether it says nothing about anybody although it stands where a secret does: the number of a
// display, which may be none, the maker's part of a hardware address, a folder.
bool isNobodys(const redact::Field& field, Kind kind, const std::string& text) {
  return (machine::isDisplayNumber(field.key) && hexadecimalNumber(text)) ||
         (kind == Kind::HardwareAddress && text.size() == std::string_view("00-00-5E").size()) ||
         (kind == Kind::User && text.starts_with('/')) || !redact::Secrets({}).add(kind, text);
}

std::vector<Value> valuesOf(const std::string& text, bool profile) {
  std::vector<Value> values;
  const auto take = [&](const redact::Field& field) {
    Value& value = values.emplace_back();
    value.text = text.substr(field.begin, field.end - field.begin);
    if (field.place == nullptr || field.data) return;
    value.kind = redact::kindOf(field.place->table, field.place->secret);
    if (value.kind && isNobodys(field, *value.kind, value.text)) value.kind.reset();
  };
  if (profile)
    redact::walkProfile(text, take);
  else
    redact::walkDocument(text, take);
  return values;
}

// Whether a name stands in the text by itself; four numbers that go on with a "." are a version.
bool standsIn(const std::string& text, const std::string& name) {
  const bool numbers = name.find_first_not_of("0123456789.") == std::string::npos;
  const auto goesOn = [&](std::size_t at) {
    if (at >= text.size()) return false;
    const auto byte = static_cast<unsigned char>(text[at]);
    return std::isalnum(byte) != 0 || byte >= 0x80 || (numbers && byte == '.');
  };
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
    if (!goesOn(at - 1) && !goesOn(at + name.size())) return true;
  }
  return false;
}

// The texts of a property list, escaped. A date is never a secret.
std::string textsOf(const std::string& xml) {
  std::string text;
  for (std::size_t at = 0; at < xml.size();) {
    const std::size_t mark = std::min(xml.find('<', at), xml.size());
    const std::string content = xml.substr(at, mark - at);
    const bool date =
        xml.compare(mark, 7, "</date>") == 0 && hasShape(content, "0000-00-00T00:00:00Z");
    if (!date) text += content + '\n';
    at = xml.find('>', mark) + 1;
    if (at == 0) break;
  }
  return text;
}

// A document without its first line, what the format calls tags and attributes, and days.
std::string entriesOf(std::string document) {
  redact::walkDocument(std::string(document), [&document](const redact::Field& field) {
    if (field.date)
      document.replace(field.begin, field.end - field.begin, field.end - field.begin, ' ');
  });
  std::string text;
  std::istringstream lines(document);
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    const std::size_t begin = line.find_first_not_of("+*~") == 1 ? 1 : 0;
    const std::size_t end = line.find_first_of(":=", begin);
    const std::string name = line.substr(begin, end - begin);
    const bool isName = end != std::string::npos && machine::isSnapshotName(name);
    text += (isName ? line.substr(end + 1) : line) + '\n';
  }
  return text;
}

void expectNoneLeft(const std::string& before, const std::string& after, bool profile,
                    const redact::Redacted& result) {
  const std::vector<Value> values = valuesOf(before, profile);
  const std::vector<Value> now = valuesOf(after, profile);
  expect(values.size() == now.size(), "there are as many values");
  for (std::size_t i = 0; i < values.size(); ++i) {
    expect(!values[i].kind || values[i].text != now[i].text,
           "no value is left in the place of a secret", values[i].text);
  }
  const auto isWhole = [&values](const std::string& name) {
    return std::ranges::any_of(values, [&name](const Value& value) {
      return value.kind && redact::isWhole(*value.kind) && value.text == name;
    });
  };
  // Elements are called, and a document begins, as the format has it.
  const std::string body = profile ? textsOf(after) : entriesOf(after);
  for (const auto& [name, token] : result.pairs) {
    // Short passwords of URLs are replaced there, and stay elsewhere.
    const bool password = token.starts_with("VALUE-");
    const bool placed =  // replaced in its own places only
        std::ranges::find(result.common, name) != result.common.end() || isWhole(name) || password;
    expect(placed || !standsIn(body, profile ? escaped(name) : name), "no name is left by itself",
           name);
  }
}

}  // namespace

// Redacts a file of an inventory that holds these lines, or of the profiler's document in the form
// of propertyListOf or as it is. What can be read is redacted; the result can be read, has as many
// lines and elements, holds none of the secrets, and can be redacted again.
bool fuzz::redact(const std::string& input) {
  const bool xml = input.starts_with("<?xml");
  const bool profile = xml || input.starts_with('{');
  const std::string text = xml ? input : profile ? propertyListOf(input) : inventoryOf(input);
  const auto file = Container::parse(profile ? fileOfOne("customdata", zlibStream(text))
                                             : fileOfOne("snapshot", blob(text)));
  FakeHost host;
  const bool valid =
      canBeRead(*file, host) && !(profile && text.find("<![CDATA[") != std::string::npos);
  const auto result = redact::redact(*file, host, {}, "name");
  expect(static_cast<bool>(result) == valid, "what can be read is redacted, and nothing else");
  if (!result) return false;
  expect(result->left.empty(), "nothing is found in the result");
  const auto redacted = Container::parse(result->file);
  expect(redacted && redacted->sections().size() == 1, "the result can be opened");
  const auto now = redacted->text(0);
  expect(now && canBeRead(*redacted, host), "the result can be read");
  // A line is an attribute, an element a text, which may have line ends of its own.
  const char mark = profile ? '<' : '\n';
  expect(std::ranges::count(*now, mark) == std::ranges::count(text, mark), "nothing is lost");
  expectNoneLeft(text, *now, profile, *result);
  const auto again = redact::redact(*redacted, host, {}, "name");
  expect(again && again->left.empty(), "the result can be redacted");
  return true;
}
