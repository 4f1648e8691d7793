#include "platform/portable/propertyListReader.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/shown.h"

using namespace std::string_literals;

namespace {

std::string readDocument(std::string document) {
  const auto value = platform::readPropertyList(std::move(document));
  return value ? shown(*value) : "refused";
}

std::string readElement(const std::string& xml) {
  return readDocument("<plist>" + xml + "</plist>");
}

}  // namespace

// Beside what every host reads alike.
TEST(PropertyListReader, ReadsElements) {
  const std::map<std::string, std::string> cases = {
      {"<integer>-00</integer>",                            "3:0"                                 },
      {"<integer> \n+007</integer>",                        "4:7"                                 },
      {"<integer>+0X1f</integer>",                          "4:31"                                },
      {"<integer>-0x1F</integer>",                          "4:-31"                               },
      {"<integer>-9223372036854775808</integer>",           "4:-9223372036854775808"              },
      {"<real> -1e3</real>",                                "6:-1000.000000"                      },
      {"<date>2100-03-01T13:47:05Z</date>",                 "@3129284825"                         },
      {"<date>0000-02-29T00:00:00Z</date>",                 "@-63140428800"                       },
      {"<date>1970-01-01T00:00:00Z</date>",                 "@-978307200"                         },
      {"<data></data>",                                     "data"                                },
      {"<string>\xE2\x80\x99\xF4\x8F\xBF\xBF\x01</string>", "\"\xE2\x80\x99\xF4\x8F\xBF\xBF\x01\""},
      {"<string><![CDATA[</plist>&]]></string>",            "\"</plist>&\""                       },
      {"<string>&#x000000000041;</string>",                 "\"A\""                               },
      {"<dict a='b'><key/><?x?><true></true></dict>",       "{ =true }"                           },
  };
  for (const auto& [xml, value] : cases) EXPECT_EQ(readElement(xml), value) << xml;
}

TEST(PropertyListReader, RefusesElements) {
  const std::multimap<std::string, std::vector<std::string>> cases = {
      {"integer", {"0x", "0x-1", "--1", "-9223372036854775809"}                              },
      {"real",    {"", "1 "}                                                                 },
      {"date",    {"2017-12-31T23:59:59Zx", " 2017-12-31T23:59:5Z"}                          },
      {"true",    {" "}                                                                      },
      {"string",  {"a<string>b</string>", "a<?b?>c", "&#xD800;", "&#xDFFF;"}                 },
      {"string",  {"&#;", "&#x110000;", "&#4294967361;", "a\0b"s, "\xC0\xAF", "\xED\xA0\x80"}},
      {"string",  {"\xF4\x90\x80\x80", "<![CDATA[\xE2\x80]]>", "&#4A;", "&#x0000000000041;"} },
      {"dict",    {"<key>a</key><key>b</key>", "<key>a</key><true/>x"}                       },
      {"array",   {"x", "<![CDATA[ ]]>", "<true></array></true>"}                            },
  };
  for (const auto& [name, contents] : cases) {
    for (const std::string& xml : contents) {
      EXPECT_EQ(readElement("<" + name + ">" + xml + "</" + name + ">"), "refused") << name << xml;
    }
  }
}

TEST(PropertyListReader, LooksAtTheDocumentUpToItsEnd) {
  for (const std::string& document :
       {"<true/>"s, "<plist><true/></plist></plist> & \xFF\0 <a>"s,
        "<plist><!--</plist>&--><?x </plistx>?><true/></plist>"s,
        "<?xml version=\"1.0\"?>\n<!DOCTYPE plist PUBLIC \"x\" \"y\">\n<!-- --><true/>"s}) {
    EXPECT_EQ(readDocument(document), "true") << document;
  }
  for (const std::string& document : std::vector<std::string>{
           "<true/>\0"s, "<true/>" + std::string(99, ' ') + '\0' + std::string(99, ' '), "", " \n",
           "word <plist><true/></plist>", "<plist><true/></plis",
           "\xEF\xBB\xBF<plist><data/></plist>", "<plist><true/><!-- x </plist>", "<key>a</key>",
           "<plist/>", "<plist><array/><array/></plist>"}) {
    EXPECT_EQ(readDocument(document), "refused") << document;
  }
}

// Blocks of a document are looked at as a whole.
TEST(PropertyListReader, FindsWhatItLooksForWhereverItStands) {
  const std::pair<std::string, std::string> cases[] = {
      {"<data/></plist>",                          "refused"},
      {"<data></data></plist>",                    "data"   },
      {"<!--& <data/>--><true/></plist>",          "true"   },
      {"<!--\xFF--><true/></plist>",               "refused"},
      {"<true/></plist><data/>",                   "true"   },
      {"<true/></plist><!--",                      "true"   },
      {"<true/></plist>&",                         "true"   },
      {"<string>&</string></plist>",               "refused"},
      {"<string>&amp;</string></plist>",           "\"&\""  },
      {"<string>\xE2\x80\x99</string></plist>",    "\"’\""},
      {"<string>\xE2\x80</string></plist>",        "refused"},
      {"<string><![CDATA[ & ]]></string></plist>", "\" & \""},
      {"<true/>\0</plist>"s,                       "refused"},
  };
  for (std::size_t before = 0; before < 80; ++before) {
    for (const auto& [document, value] : cases) {
      EXPECT_EQ(
          readDocument("<plist>" + std::string(before, ' ') + document + std::string(80, ' ')),
          value)
          << before << document;
    }
  }
}

TEST(PropertyListReader, RefusesDeepNestingWithoutExhaustingTheStack) {
  constexpr int kDeepest = 300'000;  // 48 bytes for each level are more than a stack
  for (const auto& [element, depth] : {
           std::pair{"array"s, kDeepest},
           {"dict",   100'000 },
           {"string", 100'000 }
  }) {
    std::string start;
    std::string end;
    for (int i = 0; i < depth; ++i) {
      start += "<" + element + (element == "dict" ? "><key>k</key>" : ">");
      end += "</" + element + ">";
    }
    EXPECT_EQ(readDocument(start), "refused");
    EXPECT_EQ(readDocument(start + "<true/>" + end), "refused");
  }
}

// Of equal keys the last value in the place of the first. A walk over the keys at each of them
// makes this take minutes.
TEST(PropertyListReader, ReadsDictionariesOfAnyLength) {
  constexpr std::size_t kCount = 100000;
  std::string xml;
  for (std::size_t i = 0; i < kCount; ++i) {
    xml += "<key>" + std::to_string(i) + "</key><integer>" + std::to_string(i) + "</integer>";
  }
  const auto value =
      platform::readPropertyList("<dict>" + xml + xml + "<key>17</key><true/></dict>");
  ASSERT_TRUE(value.has_value() && value->dictionary() != nullptr);
  EXPECT_EQ(value->dictionary()->size(), kCount);
  EXPECT_EQ((*value->dictionary())[17].first, "17");
  EXPECT_TRUE(*value->find("17")->boolean());
  EXPECT_EQ(value->find("99999")->number()->integer, 99999);
}
