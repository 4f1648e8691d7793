#include "inspect/lookup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspect/search.h"
#include "support/rows.h"

using machine::Source;

namespace {

// The values, or what is wrong.
std::string shown(const huxread::Result<std::vector<std::string>>& values) {
  if (!values) return values.error().message;
  std::string joined;
  for (const std::string& value : *values) joined += "<" + value + ">";
  return joined;
}

}  // namespace

TEST(Lookup, FindsValuesByTableRowAndColumn) {
  const auto mac = described(Source::Debug, R"(
      machine: memory_mb=16384 | virtual=false
      software: path=/a | name=Node.js [x] | version=1.0
      software: path=/b | name=ÄPFEL | version=2
      software: path=/c | name=äpfel
      software: path=/d | name=2 | version=4)");
  const struct {
    const char* name;
    const char* values;
  } cases[] = {
      {"machine.memory_mb",             "<16384>"                                              },
      {"machine.virtual",               "<false>"                                              },
      {"machine.chip",                  "not known"                                            },
      {"software.version",              "<1.0><2><4>"                                          },
      {"software[node.js [x]].version", "<1.0>"                                                },
      {"software[Äpfel].path",         "</b></c>"                                             },
      {"software[äPFEL].version",      "<2>"                                                  },
      {"software[/C].name",             "<äpfel>"                                             },
      {"software[2].version",           "<4>"                                                  }, // called so
      {"software[3].path",              "</c>"                                                 },
      {"software[5].path",              "there is no such row"                                 },
      {"software[none].path",           "there is no such row"                                 },
      {"users.name",                    "not recorded in this file"                            },
      {"softwares.name",                "there is no such table"                               },
      {"software.names",                "the table software has no such column"                },
      {"software",                      "no name of the form TABLE.COLUMN or TABLE[ROW].COLUMN"},
      {"a].b[c",                        "no name of the form TABLE.COLUMN or TABLE[ROW].COLUMN"},
  };
  for (const auto& [name, values] : cases)
    EXPECT_EQ(shown(inspect::lookUp(mac, name)), values) << name;
}

TEST(Lookup, FindsValuesOfADocumentByTheirPaths) {
  const auto document = huxread::Document::parse(
      "\xEF\xBB\xBF?keva\n+Snapshot=top\nhostname=atlas\n+OS=\n*os:1=macOS\n~kind=mac\nversion=14\n"
      "~units=GB\nversion=15\n*a/b=\nc~d=1\n*os:1=second\n-\n-\n");
  ASSERT_TRUE(document) << document.error().message;
  const struct {
    const char* path;
    const char* values;
  } cases[] = {
      {"/",                      "<top>"                },
      {"/hostname",              "<atlas>"              },
      {"/OS/os:1/version",       "<14><15>"             },
      {"/OS/os:1/",              "<macOS><second>"      },
      {"/OS/os:1/~kind",         "<mac>"                },
      {"/OS/os:1/version~units", "<GB>"                 },
      {"/OS/a/b/c~d",            "<1>"                  },
      {"/OS/none",               "there is no such path"},
      {"OS/os:1/version",        "there is no such path"},
  };
  for (const auto& [path, values] : cases) {
    EXPECT_EQ(shown(inspect::lookUpPath(*document, path)), values) << path;
  }
}

TEST(Search, FindsAnyPartOfAnyValueInAnyCase) {
  const auto mac = described(Source::Debug, R"(
      machine: name=Ünal’s ŁÓDŹ ¿ | memory_mb=16384
      users: full_name=ΣΟΦΙΑ Ђуро)");
  const struct {
    const char* term;
    const char* where;
  } cases[] = {
      {"üNAL",         "name"     },
      {"łódź",       "name"     },
      {"638",           "memory_mb"},
      {"σοφια ђ", "full_name"},
      {"",              ""         },
      {"x",             ""         },
      {"ß",            ""         },
  };
  for (const auto& [term, where] : cases) {
    std::string found;
    for (const inspect::Match& match : inspect::search(mac, term)) found += match.column->name;
    EXPECT_EQ(found, where) << term;
  }
}
