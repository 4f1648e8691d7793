#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <sstream>
#include <string>

#include "golden/machine.h"
#include "huxread/handmade.h"
#include "redact/redact.h"
#include "support/fakeHost.h"
#include "support/fileText.h"

// What becomes of planted secrets: planted.txt, which says how it is written.

namespace {

// A paragraph, or what stands in its place.
struct Planted {
  std::string section;  // of the profiler, that the text is an item of; "" in Mara's document
  std::set<redact::Kind> kept;
  std::string text;
};

// Nothing when it is refused.
std::optional<std::string> redacted(const std::string& file, const std::set<redact::Kind>& kept) {
  FakeHost host;
  const auto result = redact::redact(*huxread::Container::parse(file), host, kept, "");
  if (!result) return std::nullopt;
  EXPECT_THAT(result->left, testing::IsEmpty());
  return *huxread::Container::parse(result->file)->text(0);
}

// What becomes of it, each line behind "> ".
std::string outcomeOf(const Planted& planted, const std::string& mara) {
  const bool profiled = !planted.section.empty();
  const std::string front = profiled
                                ? "<?xml version=\"1.0\"?>\n<!DOCTYPE list>\n<plist "
                                  "version=\"1.0\"><array><dict><key>_dataType</key><string>" +
                                      planted.section + "</string><key>_items</key><array><dict>\n"
                                : "\xEF\xBB\xBF?keva\n" + mara;
  const std::string back = profiled ? "</dict></array></dict></array></plist>\n" : "-\n";
  const std::string whole = front + planted.text + back;
  const std::string file =
      profiled ? fileOfOne("customdata", zlibStream(whole)) : fileOfOne("snapshot", blob(whole));
  const auto text = redacted(file, planted.kept);
  if (!text) return "> (refused)\n";
  if (profiled) {
    EXPECT_TRUE(text->starts_with(front) && text->ends_with(back)) << *text;
  }
  std::istringstream lines(*text);
  std::string outcome;
  auto skipped = std::ranges::count(front, '\n');
  auto taken = std::ranges::count(planted.text, '\n');
  for (std::string line; std::getline(lines, line);) {
    if (skipped-- <= 0 && taken-- > 0) outcome += "> " + line + "\n";
  }
  return outcome;
}

// "[SPAudioDataType]", "[keep serial]"
void readHeading(std::string line, Planted& planted) {
  line = line.substr(1, line.size() - 2);
  if (!line.starts_with("keep ")) {
    planted.section = line;
    return;
  }
  std::istringstream names(line.substr(5));
  for (std::string name; names >> name;) planted.kept.insert(redact::findKind(name).value());
}

// The same text with what really comes out.
std::string rebuilt(const std::string& golden) {
  std::istringstream lines(golden + "\n");
  std::string text;
  std::string mara;
  Planted planted;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() && !planted.text.empty()) {
      text += outcomeOf(planted, mara);
      if (mara.empty()) mara = planted.text;
      planted = {};
    }
    if (line.starts_with("> ")) continue;
    text += line + "\n";
    if (line.starts_with('['))
      readHeading(line, planted);
    else if (!line.empty() && !line.starts_with('#'))
      planted.text += line + "\n";
  }
  text.pop_back();  // behind the last paragraph
  return text;
}

}  // namespace

TEST(GoldenPlanted, IsReplacedInEverySpellingWhereverItStands) {
  const std::string file = PROJECT_FOLDER "/tests/golden/planted.txt";
  expectGolden("planted", file, rebuilt(fileText(file)));
}
