#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>

#include "machine/schema.h"
#include "show/json.h"
#include "show/machines.h"
#include "support/rows.h"

// The pages that the schema is written down in again, docs/tables.md for people and
// docs/hux.schema.json for programs, and the JSON that the latter describes.

namespace {

using Json = nlohmann::ordered_json;
using machine::Column;
using machine::Table;

constexpr const char* kTablesPage = PROJECT_FOLDER "/docs/tables.md";
constexpr const char* kSchemaPage = PROJECT_FOLDER "/docs/hux.schema.json";

std::string contentOf(const char* path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// --- docs/tables.md

constexpr const char* kTypes[] = {"text", "integer", "real", "flag"};
constexpr const char* kIdentities[] = {"", "first", "second", "sure"};
constexpr const char* kSecrets[] = {
    "",          "serial", "hardware address", "network address", "uuid", "user", "host", "home",
    "free text", "whole"};

template <typename Enum>
const char* word(const auto& words, Enum value) {
  return words[static_cast<std::size_t>(value)];
}

// What follows the words at the top of the page.
std::string tablesText() {
  std::ostringstream page;
  for (const Table& table : machine::kTables) {
    page << "## " << table.name << "\n\n"
         << static_cast<char>(std::toupper(table.meaning.front())) << table.meaning.substr(1)
         << (table.single ? "; one row.\n\n" : ".\n\n")
         << "| column | type | unit | identifies | changes | secret | meaning |\n"
         << "|---|---|---|---|---|---|---|\n";
    for (const Column& column : table.columns) {
      page << "| " << column.name << " | " << word(kTypes, column.type) << " | " << column.unit
           << " | " << word(kIdentities, column.identity) << " | "
           << (column.changes == machine::Changes::Yes ? "yes" : "") << " | "
           << word(kSecrets, column.secret) << " | " << column.meaning << " |\n";
    }
    page << (&table == std::end(machine::kTables) - 1 ? "" : "\n");
  }
  return page.str();
}

std::string expectedTablesPage() {
  const std::string page = contentOf(kTablesPage);
  return page.substr(0, page.find("## machine\n")) + tablesText();
}

// --- docs/hux.schema.json

Json ofColumn(const Column& column) {
  static constexpr const char* kJsonTypes[] = {"string", "integer", "number", "boolean"};
  return {
      {"description", column.meaning                         },
      {"type",        {word(kJsonTypes, column.type), "null"}}
  };
}

Json ofTable(const Table& table) {
  Json row = {
      {"type",       "object"      },
      {"required",   Json::array() },
      {"properties", Json::object()}
  };
  for (const Column& column : table.columns) {
    row["required"].push_back(column.name);
    row["properties"][std::string(column.name)] = ofColumn(column);
  }
  Json schema = {
      {"description", table.meaning                              },
      {"type",        {table.single ? "object" : "array", "null"}}
  };
  if (!table.single) {
    schema["items"] = row;
    return schema;
  }
  schema["required"] = row["required"];
  schema["properties"] = row["properties"];
  return schema;
}

// Puts each list of words on one line.
std::string withShortLists(const std::string& page) {
  std::string text;
  for (std::size_t at = 0; at < page.size();) {
    const std::size_t end = page.find_first_of("[]{}", at + 1);
    const bool list = page[at] == '[' && end != std::string::npos && page[end] == ']';
    for (const std::size_t last = list ? end : at; at <= last; ++at) {
      if (!list || page[at] != '\n')
        text += page[at];
      else
        at = page.find_first_not_of(' ', at + 1) - 1;
      if (list && page[at] == ',') text += ' ';
    }
  }
  return text;
}

std::string expectedSchemaPage() {
  Json tables = {
      {"description",
       "null is a table that the file does not record, which is another thing than one "
       "without rows"               },
      {"type",        "object"      },
      {"required",    Json::array() },
      {"properties",  Json::object()}
  };
  for (const Table& table : machine::kTables) {
    tables["required"].push_back(table.name);
    tables["properties"][std::string(table.name)] = ofTable(table);
  }
  const Json schema = {
      {"$schema",     "https://json-schema.org/draft/2020-12/schema"             },
      {"$id",         "urn:orbex:hux-json:1"                                     },
      {"title",       "What a .hux file says of a Mac, as huxutil json prints it"},
      {"description",
       "Within version 1 tables, columns and members of the document may be added, and texts may "
       "take "
       "values that did not occur before; nothing is removed or renamed, and nothing changes its "
       "type, "
       "its unit or its meaning. So a reader passes over what it does not know. Every table and "
       "every "
       "column stands in every document; null is what is not known."             },
      {"type",        "object"                                                   },
      {"required",    {"format", "file", "source", "tables"}                     },
      {"properties",
       {{"format", {{"const", "hux-json/1"}}},
        {"file", {{"description", "name of the file, as it was given"}, {"type", "string"}}},
        {"source", {{"description", "what the file holds"}, {"enum", {"snapshot", "debug"}}}},
        {"tables", tables}}                                                      }
  };
  return withShortLists(schema.dump(2)) + "\n";
}

// Expects that a page is what the schema makes of it, and names what is not; writes it anew when
// scripts/refresh-tables asks for that.
void expectPage(const char* path, const std::string& expected) {
  if (std::getenv("ORBEX_REFRESH_TABLES") != nullptr) std::ofstream(path) << expected;
  const std::string page = contentOf(path);
  const auto linesOf = [](const std::string& text) {
    std::multiset<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.insert(line);
    return lines;
  };
  const auto report = [path](const auto& these, const auto& others, const char* what) {
    std::vector<std::string> lines;
    std::ranges::set_difference(these, others, std::back_inserter(lines));
    for (const std::string& line : lines) ADD_FAILURE() << path << what << line;
  };
  report(linesOf(expected), linesOf(page), " lacks: ");
  report(linesOf(page), linesOf(expected), " has what the schema has not: ");
  EXPECT_TRUE(page == expected) << path << ": to write it anew: scripts/refresh-tables";
}

// --- JSON Schema, as much of it as the page uses

std::string typeOf(const Json& value) {
  return value.is_number_integer() ? "integer" : value.type_name();
}

bool isOfType(const Json& value, const std::string& type) {
  return typeOf(value) == type || (type == "number" && value.is_number());
}

// What of `value` is not as `schema` says, or is not in it: one line for each.
std::string faultsOf(const Json& value, const Json& schema, const std::string& path) {
  std::string faults;
  for (const auto& [keyword, rule] : schema.items()) {
    if (keyword == "$schema" || keyword == "$id" || keyword == "title" ||
        keyword == "description") {
      continue;
    }
    if (keyword == "type") {
      const Json types = rule.is_array() ? rule : Json{rule};
      if (std::ranges::none_of(types, [&](const Json& type) { return isOfType(value, type); })) {
        faults += path + " is of type " + typeOf(value) + "\n";
      }
    } else if (keyword == "const" || keyword == "enum") {
      const Json allowed = rule.is_array() ? rule : Json{rule};
      if (std::ranges::find(allowed, value) == allowed.end())
        faults += path + " is another value\n";
    } else if (keyword == "required") {
      for (const Json& name : rule) {
        if (value.is_object() && !value.contains(name))
          faults += path + " lacks " + name.dump() + "\n";
      }
    } else if (keyword == "properties") {
      if (!value.is_object()) continue;
      for (const auto& [name, member] : value.items()) {
        faults += rule.contains(name) ? faultsOf(member, rule[name], path + "/" + name)
                                      : path + "/" + name + " is not in the schema\n";
      }
    } else if (keyword == "items") {
      if (!value.is_array()) continue;
      for (const Json& item : value) faults += faultsOf(item, rule, path + "[]");
    } else {
      faults += "a keyword that this test does not know: " + keyword + "\n";
    }
  }
  return faults;
}

std::string faultsOf(const Json& document) {
  static const Json kSchema = Json::parse(contentOf(kSchemaPage));
  return faultsOf(document, kSchema, "");
}

}  // namespace

TEST(Pages, TablesAreTheSchemasInBothDirections) {
  expectPage(kTablesPage, expectedTablesPage());
}

TEST(Pages, TheJsonSchemaIsThatOfTheTables) {
  expectPage(kSchemaPage, expectedSchemaPage());
}

TEST(Json, IsAsItsSchemaSays) {
  for (const auto& machine :
       {notebook(), monster(), machine::Description(machine::Source::Snapshot)}) {
    const std::string lines = show::json(machine, "a.hux", show::JsonLayout::Lines);
    const std::string compact = show::json(machine, "a.hux", show::JsonLayout::Compact);
    EXPECT_EQ(faultsOf(Json::parse(lines)), "");
    EXPECT_EQ(Json::parse(lines), Json::parse(compact));
    EXPECT_EQ(compact.find('\n'), compact.size() - 1);
  }
}

// Or the test above proves nothing.
TEST(Json, ThatIsNotAsItsSchemaSaysIsNoticed) {
  const std::string good = show::json(notebook(), "a.hux", show::JsonLayout::Compact);
  const auto faults = [&good](const std::string& from, const std::string& to) {
    std::string bad = good;
    bad.replace(bad.find(from), from.size(), to);
    return faultsOf(Json::parse(bad));
  };
  EXPECT_EQ(faults("hux-json/1", "hux-json/2"), "/format is another value\n");
  EXPECT_EQ(faults(R"("cores":10)", R"("cores":10.5)"),
            "/tables/machine/cores is of type number\n");
  EXPECT_EQ(faults(R"("virtual":false)", R"("virtual":0)"),
            "/tables/machine/virtual is of type integer\n");
  EXPECT_EQ(faults(R"("chip":)", R"("chips":)"),
            "/tables/machine lacks \"chip\"\n/tables/machine/chips is not in the schema\n");
  EXPECT_EQ(faults(R"("disks":[)", R"("disks":[7,)"), "/tables/disks[] is of type integer\n");
}

TEST(Json, TellsEmptyFromNotRecordedAndRepairsTexts) {
  auto mac = described(machine::Source::Debug, "printers\nenvironment:");
  lastValue(mac, "environment", "name") = "a\xFF\x1B\"\n";
  const std::string text = show::json(mac, "\xC3.hux", show::JsonLayout::Lines);
  EXPECT_NE(text.find("    \"printers\":[],\n"), std::string::npos);
  EXPECT_NE(text.find("    \"processes\":null,\n"), std::string::npos);
  EXPECT_NE(text.find("    \"machine\":null,\n"), std::string::npos);
  EXPECT_NE(text.find("    \"environment\":[\n      "
                      "{\"name\":\"a\uFFFD\\u001b\\\"\\n\",\"value\":null}\n    ],\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("  \"file\":\"\uFFFD.hux\",\n"), std::string::npos);
}
