#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "golden/machine.h"
#include "machine/secretPlaces.h"

// docs/schema.md against the golden snapshots: its tables are read as they stand, so that the page
// for people is also the one for this test.

namespace {

// What a page or a snapshot says of one path.
struct Entry {
  std::string where;  // for messages
  std::string kind;   // of the page
  std::string value;  // of the snapshot
  std::set<std::string> properties;
};

// By document and path, with what follows a ":" left out: "Snapshot/Memory/Memory-slot:/used". A
// path that ends in "/" is a tag.
using Entries = std::multimap<std::string, Entry>;

struct Page {
  std::map<std::string, std::regex> kinds;
  Entries paths;
};

Page readPage() {
  static const std::regex kKind(R"(\| ([a-z]+) \| `([^`]*)` \|.*)");
  static const std::regex kPath(R"(\| `(/[^`]*)` \| ([^ |]*) \|[^|]*\|[^|]*\|([^|]*)\|.*)");
  static const std::regex kName("[a-z][^`, ]*");
  static const std::regex kNumber(":[^/]*");
  Page page;
  std::ifstream file(PROJECT_FOLDER "/docs/schema.md");
  std::string document;
  std::smatch cells;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("## ")) document = line.substr(3);
    if (std::regex_match(line, cells, kKind)) page.kinds.emplace(cells[1], cells[2].str());
    if (!std::regex_match(line, cells, kPath)) continue;
    const std::string key = document + std::regex_replace(cells[1].str(), kNumber, ":");
    EXPECT_EQ(page.paths.count(key), 0U) << "stands twice: " << line;
    const std::string names = cells[3];
    std::set<std::string> properties(std::sregex_token_iterator(names.begin(), names.end(), kName),
                                     {});
    page.paths.emplace(key, Entry{line, cells[2], "", properties});
  }
  return page;
}

// Reads the text form of documents.
void readSnapshot(const Machine& machine, Entries& entries) {
  std::istringstream lines(goldenText(machine));
  std::vector<std::string> branches;  // that are open
  std::string tag;                    // the last one that began
  Entry* last = nullptr;
  for (std::string line; std::getline(lines, line);) {
    const char lead = line.front();
    const std::size_t equals = line.find('=');
    if (line == "\xEF\xBB\xBF?keva") {
      branches = {""};
    } else if (line == "-") {
      branches.pop_back();
    } else if (lead == '~') {
      last->properties.insert(line.substr(1, equals - 1));
    } else {
      const bool isTag = lead == '+' || lead == '*';
      const std::size_t end = line.find_first_of(":=");
      const std::string name = line.substr(isTag, end + (line[end] == ':') - isTag);
      if (isTag) tag = branches.back() + name + "/";
      if (lead == '+') branches.push_back(tag);
      const Entry entry{
          std::string(machine.name) + ".txt: " + line, "", line.substr(equals + 1), {}};
      last = &entries.emplace(isTag ? tag : tag + name, entry)->second;
    }
  }
}

Entries goldenEntries() {
  Entries all;
  for (const Machine& machine : machines()) readSnapshot(machine, all);
  return all;
}

}  // namespace

TEST(Schema, DocumentsWhateverTheGoldenSnapshotsHold) {
  const Page page = readPage();
  for (const auto& [path, found] : goldenEntries()) {
    const auto documented = page.paths.find(path);
    const std::size_t slash = path.find('/');
    ASSERT_TRUE(documented != page.paths.end())
        << "docs/schema.md, \"## " << path.substr(0, slash) << "\", has no row for `"
        << path.substr(slash) << "` (behind a \":\" goes N or a name in capitals); seen in "
        << found.where;
    const Entry& row = documented->second;
    const auto kind = page.kinds.find(row.kind);
    ASSERT_NE(kind, page.kinds.end()) << "docs/schema.md: unknown kind: " << row.where;
    EXPECT_TRUE(std::regex_match(found.value, kind->second))
        << found.where << " is no " << row.kind;
  }
}

// So that redacting leaves them alone, whoever is called so.
TEST(Schema, NamesWhatTheReaderKnowsAsNames) {
  for (const auto& [path, row] : readPage().paths) {
    std::set<std::string> names = row.properties;
    std::istringstream parts(path.substr(path.find('/') + 1));
    for (std::string part; std::getline(parts, part, '/');)
      names.insert(part.substr(0, part.find(':')));
    names.erase("");
    for (const std::string& name : names) EXPECT_TRUE(machine::isSnapshotName(name)) << name;
  }
}

TEST(Schema, PromisesNothingThatNoGoldenSnapshotHolds) {
  const Entries found = goldenEntries();
  for (const auto& [path, row] : readPage().paths) {
    const auto [first, end] = found.equal_range(path);
    EXPECT_TRUE(first != end) << "docs/schema.md: no machine shows " << row.where;
    std::set<std::string> properties;
    for (auto entry = first; entry != end; ++entry) {
      properties.insert(entry->second.properties.begin(), entry->second.properties.end());
    }
    EXPECT_EQ(properties, row.properties) << "docs/schema.md: " << row.where;
  }
}
