#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "machine/valueText.h"
#include "show/age.h"
#include "show/columns.h"
#include "show/csv.h"
#include "show/styledLines.h"
#include "show/terminal.h"
#include "support/rows.h"

namespace {

std::string safe(std::string_view text) {
  std::string whole;
  show::writeSafely(text, [&whole](std::string_view piece) { whole += piece; });
  return whole;
}

// The lines of a table of one row, without the names.
std::string csvOf(const std::string& row, const char* file = "a.hux") {
  const auto mac = described(machine::Source::Debug, "machine: serial=C02\n" + row);
  return show::csvRows(*machine::findTable(row.substr(0, row.find(':'))), mac, file);
}

}  // namespace

TEST(Terminal, HasColoursUnlessSomethingIsAgainstThem) {
  EXPECT_TRUE(show::terminalOf(true, 80, nullptr, "xterm").colour);
  EXPECT_TRUE(show::terminalOf(true, 80, "", "xterm").colour);
  EXPECT_FALSE(show::terminalOf(true, 80, "0", "xterm").colour);
  EXPECT_FALSE(show::terminalOf(true, 80, nullptr, "dumb").colour);
  EXPECT_FALSE(show::terminalOf(true, 80, nullptr, nullptr).colour);
  EXPECT_FALSE(show::terminalOf(false, 80, nullptr, "xterm").colour);
  EXPECT_EQ(show::terminalOf(true, 0, nullptr, nullptr).width, 80);
}

TEST(Terminal, GetsNoByteThatSteersIt) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"",                   ""                        },
      {"a\n\tb",             "a\n\tb"                  },
      {"\x1B[31mred\x1B[0m", "\\u001B[31mred\\u001B[0m"},
      {std::string(1,        '\0') + "\r\a",             "\\u0000\\u000D\\u0007"},
      {"\x7F",                    "\\u007F"                                        },
      {"\xC2\x9B"
       "2J",                    "\\u009B2J"},
      {"\x9B"
       "2J",                    "\\x9B2J"                                        },
      {"\xE2\x80\xAEgpj.exe",                    "\\u202Egpj.exe"},
      {"\xE2\x81\xA6x\xE2\x81\xA9",                    "\\u2066x\\u2069"                                  },
      {"\xE2\x80\x8EName",                    "\xE2\x80\x8EName"},
      {"é機😀",                    "é機😀"                                         },
      {"\xF0\x9F\x98",                    "\\xF0\\x9F\\x98"},
      {" \x1F~\xC2\x80\xC2\x9F\xC2\xA0",                    " \\u001F~\\u0080\\u009F\xC2\xA0"                       },
      {"\u2029\u202A\u202F",                    "\u2029\\u202A\u202F"   },
      {"\u2065\u206A",                    "\u2065\u206A"                             },
      {"\xC0\x9B",                    "\\xC0\\x9B"       },
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(safe(text), expected);
  EXPECT_EQ(show::onOneLine("a\n\tb\x1B"), "a  b\\u001B");
}

TEST(Columns, CountsWideAndCombiningCharacters) {
  struct Case {
    const char* text;
    std::size_t columns;
    const char* inFive;
  };
  const Case cases[] = {
      {"",                   0, "     "                },
      {"abcde",              5, "abcde"                },
      {"abcdef",             6, "abcd…"              },
      {"abc  f",             6, "abc… "              },
      {"日本語",          6, "日本…"            },
      {"a日本",            5, "a日本"              },
      {"a日本語",         7, "a日… "             },
      {"e\u0301tude",        5, "e\u0301tude"          },
      {"e\u0301tudes",       6, "e\u0301tud…"        },
      {"한국",             4, "한국 "              },
      {"\u1112\u1161\u11AB", 2, "\u1112\u1161\u11AB   "}, // a syllable in three parts
      {"😀\u200D",         2, "😀\u200D   "        },
      {"“–…█×",     5, "“–…█×"       },
      {"\U0001FAF8",         2, "\U0001FAF8   "        }, // of Unicode 15
  };
  for (const Case& c : cases) {
    EXPECT_EQ(show::columnsOf(c.text), c.columns) << c.text;
    EXPECT_EQ(show::padded(c.text, 5), c.inFive);
  }
  EXPECT_EQ(show::cut("ab", 0), "");
}

// So that no range of the tables is a character too long or too short.
TEST(Columns, CountsEveryCharacter) {
  std::map<std::size_t, int> characters;
  for (char32_t character = 0x80; character <= 0x10FFFF; ++character) {
    if (character >= 0xD800 && character <= 0xDFFF) continue;
    std::string text(character < 0x800 ? 2 : character < 0x10000 ? 3 : 4, '\0');
    char32_t rest = character;
    for (std::size_t i = text.size() - 1; i > 0; --i, rest >>= 6) {
      text[i] = static_cast<char>(0x80 | (rest & 0x3F));
    }
    text[0] = static_cast<char>((0xF00U >> text.size()) | rest);
    ++characters[show::columnsOf(text)];
  }
  EXPECT_EQ(characters[0], 1920);
  EXPECT_EQ(characters[2], 191848);
}

TEST(StyledLines, LoseTheirEndWhereItDoesNotFit) {
  const std::vector<show::StyledLine> line = {
      {{{"abcd"}}, {"efghij"}}
  };
  EXPECT_EQ(show::render(line, 12, false), "abcd  efghij\n");
  EXPECT_EQ(show::render(line, 11, false), "abcd\n");
}

TEST(Values, AreWrittenSoThatTheyCanBeReadBack) {
  EXPECT_EQ(machine::valueText({}), "");
  EXPECT_EQ(machine::valueText(std::int64_t{-42}), "-42");
  EXPECT_EQ(machine::valueText(0.1), "0.1");
  EXPECT_EQ(machine::valueText(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(machine::valueText(false), "false");
}

TEST(Csv, QuotesAndDefusesTexts) {
  EXPECT_EQ(show::csvHeader(*machine::findTable("environment")),
            "file,machine_serial,name,value\n");
  const std::pair<const char*, const char*> cases[] = {
      {"plain",     "plain"            },
      {"a,b",       "\"a,b\""          },
      {"say \"x\"", "\"say \"\"x\"\"\""},
      {"a\nb",      "\"a\nb\""         },
      {"=1+1",      "'=1+1"            },
      {"+1",        "'+1"              },
      {"-1",        "'-1"              },
      {"@x",        "'@x"              },
      {"=\"x\"",    "\"'=\"\"x\"\"\""  },
      {"\tx",       "'\tx"             },
      {"\rx",       "\"'\rx\""         },
      {"a=b",       "a=b"              },
  };
  for (const auto& [value, cell] : cases) {
    auto mac = described(machine::Source::Debug, "machine: serial=C02\nenvironment:");
    lastValue(mac, "environment", "name") = value;
    EXPECT_EQ(show::csvRows(*machine::findTable("environment"), mac, "a.hux"),
              "a.hux,C02," + std::string(cell) + ",\n");
  }
  EXPECT_EQ(csvOf("environment:", "-a,b"), "\"'-a,b\",C02,,\n");
  EXPECT_EQ(csvOf("users: uid=-2"), "a.hux,C02,,,-2,,,\n");
  EXPECT_EQ(csvOf("usb: hub=true"), "a.hux,C02,,,,,,,,,,true,\n");
}

TEST(Age, IsSaidInTheLargestUnitThatTellsEnough) {
  constexpr std::int64_t kThen = 1795274525;
  constexpr std::int64_t kDay = 86400;
  const std::pair<std::int64_t, const char*> cases[] = {
      {-1,           ""             },
      {0,            "just now"     },
      {59,           "just now"     },
      {60,           "1 min ago"    },
      {3599,         "59 min ago"   },
      {3600,         "1 h ago"      },
      {2 * kDay - 1, "47 h ago"     },
      {2 * kDay,     "2 days ago"   },
      {59 * kDay,    "59 days ago"  },
      {60 * kDay,    "2 months ago" },
      {729 * kDay,   "24 months ago"},
      {730 * kDay,   "2 years ago"  },
      {1094 * kDay,  "2 years ago"  },
      {1095 * kDay,  "3 years ago"  },
  };
  for (const auto& [seconds, words] : cases) {
    EXPECT_EQ(show::age("2026-11-21T16:22:05+01:00", kThen + seconds), words) << seconds;
  }
  EXPECT_EQ(show::age("2026-11-21T15:22:05Z", kThen), "just now");
  EXPECT_EQ(show::age("2026-11-21T11:52:05-03:30", kThen), "just now");
  for (const char* none : {"", "2026-11-21", "2026-02-30T00:00:00Z", "2026-11-21T16:22:05",
                           "2026-11-21T16:22:05+1", "2O26-11-21T16:22:05Z"}) {
    EXPECT_EQ(show::age(none, kThen), "") << none;
  }
}
