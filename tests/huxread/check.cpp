#include "huxread/check.h"

#include <gtest/gtest.h>

#include <string>

#include "handmade.h"

namespace huxread {

TEST(Check, FindsWhatIsWrongWithATextAndWhere) {
  const std::string start = "\xEF\xBB\xBF?keva\n";
  const struct {
    const char* type;
    std::string text;
    const char* message;
  } cases[] = {
      {"snapshot",   start + "*Snapshot=\n",                                                        ""                                                           },
      {"snapshot",   start + "*AssetInfo=\n",
       "section 0: line 2 is not the top tag of such a section"                                                                                                  },
      {"assetinfo",  start,                                                                         "section 0: the document has no tag"                         },
      {"assetinfo",  start + "*AssetInfo=\n*B=\n",
       "section 0: the document has more than one top tag"                                                                                                       },
      {"assetinfo",  start + "*AssetInfo=\na\n",                                                    "section 0: line 3 is no entry"                              },
      {"customdata", "<?xml v=\">\"?>\n<!DOCTYPE p>\n<p a='/>'><!-- <q> --><b/>\n<c >x</c ></p>\n",
       ""                                                                                                                                                        },
      {"customdata", "",                                                                            "section 0: the report is empty"                             },
      {"customdata", "<?xml?>\n",                                                                   "section 0: line 2: there is no element"                     },
      {"customdata", "<a>\n<b>\n</a>\n",                                                            "section 0: line 3: an end belongs to no element"            },
      {"customdata", "<a>\n<b></b>\n",                                                              "section 0: line 3: an element is not ended"                 },
      {"customdata", "<a>\n<b \"></a>\n",                                                           "section 0: line 2: an element is cut off"                   },
      {"customdata", "<a></a>\n<a></a>\n",                                                          "section 0: line 2: a second document begins"                },
      {"customdata", "<a></a>\nx<!-- -->",
       "section 0: line 2: text stands outside of the elements"                                                                                                  },
      {"customdata", "<a><!-- ",                                                                    "section 0: line 1: a comment or an instruction is not ended"},
      {"customdata", "<>",                                                                          "section 0: line 1: an element has no name"                  },
      {"other",      start + "*Other=\n",                                                           "section 0: its type is not known"                           },
  };
  for (const auto& [type, text, message] : cases) {
    const bool raw = std::string_view(type) == "customdata";
    const std::string data = raw ? zlibStream(text) : blob(text);
    std::string file = fileOfOne(type, data);
    if (std::string_view(type) == "snapshot") file.replace(file.find("count=0"), 7, "count=1");
    const auto container = Container::parse(file);
    ASSERT_TRUE(container) << container.error().message;
    const std::vector<Problem> problems = check(*container);
    EXPECT_EQ(problems.empty() ? "" : problems[0].message, message) << text;
    EXPECT_LE(problems.size(), 1U) << text;
  }
}

}  // namespace huxread
