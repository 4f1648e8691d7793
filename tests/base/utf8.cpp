#include "base/utf8.h"

#include <gtest/gtest.h>

TEST(Utf8, TakesTheReplacementForEveryOtherByte) {
  const struct {
    const char* bytes;
    const char* valid;
  } cases[] = {
      {"",                                                         ""                                                },
      {"a\u00E9\u2019\U0001F34E",                                  "a\u00E9\u2019\U0001F34E"                         },
      {"\xE9t\xE9",                                                "\uFFFDt\uFFFD"                                   },
      {"\x80\x80\u00E9\xC3/\xC1\x80\xC3",                          "\uFFFD\uFFFD\u00E9\uFFFD/\uFFFD\uFFFD\uFFFD"     },
      {"\xF0\x9F\x8D/",                                            "\uFFFD\uFFFD\uFFFD/"                             }, // cut
      {"\xF0\x9F/\x80\xE2\x80/",                                   "\uFFFD\uFFFD/\uFFFD\uFFFD\uFFFD/"                },
      {"\xF1/\x80\x80\xE2/\x80",                                   "\uFFFD/\uFFFD\uFFFD\uFFFD/\uFFFD"                },
      {"\xC0\xAF\xE0\x9F\xBF",                                     "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"                  }, // overlong
      {"\xED\x9F\xBF\xED\xA0\x80",                                 "\uD7FF\uFFFD\uFFFD\uFFFD"                        }, // surrogate
      {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80",
       "\u0080\u07FF\u0800\uFFFF\U00010000"                                                                          },
      {"\xF0\x8F\xBF\xBF",                                         "\uFFFD\uFFFD\uFFFD\uFFFD"                        },
      {"\xF4\x8F\xBF\xBF",                                         "\U0010FFFF"                                      },
      {"\xF4\x90\x80\x80\xF5\x80\x80\x80",                         "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
  };
  for (const auto& [bytes, valid] : cases) EXPECT_EQ(validUtf8(bytes), valid) << bytes;
}

TEST(Utf8, LooksNoFurtherThanTheText) {
  constexpr std::string_view kText = "\xF0\x9F\x8D\x8E";
  EXPECT_EQ(utf8SequenceLength(kText), 4U);
  for (std::size_t size = 1; size < 4; ++size)
    EXPECT_EQ(utf8SequenceLength(kText.substr(0, size)), 0U);
}
