#include "keva/tagValue.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(TagValue, NormalizesTexts) {
  for (const auto& [given, stored] : {
           std::pair{"a\nb\nc"s,            "a\rb\rc"          },
           {"a\rb\r\nc",           "a\rb\r"           }, // cut behind the first CR LF
           {"a\n\r\nb",            "a\r\r"            },
           {" ",                   " "                }, // one byte stays
           {"  ",                  ""                 },
           {" a \r\nb",            "a \r"             }, // trimmed after the cut
           {" \t\xC2\xA0x y\xFF ", "\t\xC2\xA0x y\xFF"},
           {"a \0b"s,              "a"                }
  }) {
    EXPECT_EQ(*TagValue(given).text(), stored);
  }
  EXPECT_EQ(*TagValue(static_cast<const char*>(nullptr)).text(), "");
}

TEST(TagValue, IsNotWipedOutByNone) {
  TagValue value(std::int64_t{5});
  value = TagValue();
  const TagValue none;
  value = none;
  EXPECT_EQ(*value.integer(), 5);
}
