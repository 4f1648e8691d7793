#include "huxread/check.h"

#include <gtest/gtest.h>

#include <string>

#include "handmade.h"

namespace huxread {

TEST(Check, FindsWhatIsWrongWithATextAndWhere) {
  const std::string start = "\xEF\xBB\xBF?keva\n";
  const auto nested = [](std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) text = "<a>" + text + "</a>";
    return text;
  };
  const struct {
    const char* type;
    std::string text;
    const char* message;
  } cases[] = {
      {"snapshot",         start + "*Snapshot=\n",                                                        ""                                                           },
      {"snapshot",         start + "*AssetInfo=\n",
       "section 0: line 2 is not the top tag of such a section"                                                                                                        },
      {"assetinfo",        start,                                                                         "section 0: the document has no tag"                         },
      {"assetinfo",        start + "*AssetInfo=\n*B=\n",
       "section 0: the document has more than one top tag"                                                                                                             },
      {"assetinfo",        start + "*AssetInfo=\na\n",                                                    "section 0: line 3 is no entry"                              },
      {"customdata",       "<?xml v=\">\"?>\n<!DOCTYPE p>\n<p a='/>'><!-- <q> --><b/>\n<c >x</c ></p>\n",
       ""                                                                                                                                                              },
      {"customdata",       "",                                                                            "section 0: the report is empty"                             },
      {"customdata",       "<?xml?>\n",                                                                   "section 0: line 2: there is no element"                     },
      {"customdata",       "<a>\n<b>\n</a>\n",                                                            "section 0: line 3: an end belongs to no element"            },
      {"customdata",       "<a>\n<b></b>\n",                                                              "section 0: line 3: an element is not ended"                 },
      {"customdata",       "<a>\n<b \"></a>\n",                                                           "section 0: line 2: an element is cut off"                   },
      {"customdata",       "<a></a>\n<a></a>\n",                                                          "section 0: line 2: a second document begins"                },
      {"customdata",       "<a></a>\nx<!-- -->",
       "section 0: line 2: text stands outside of the elements"                                                                                                        },
      {"customdata",       "<a><!-- ",                                                                    "section 0: line 1: a comment or an instruction is not ended"},
      {"customdata",       "<>",                                                                          "section 0: line 1: an element has no name"                  },
      {"customdata",       "<a></a></a>",                                                                 "section 0: line 1: an end belongs to no element"            },
      {"customdata",       "\t\r\n <a\t/>\r\n",                                                           ""                                                           },
      {"customdata",       "<a\nb='\">' c=\"'>\"><b\r/></a\t>",                                           ""                                                           },
      {"customdata",       "<a b=\"1\" c='>'/>",                                                          ""                                                           },
      {"customdata",       "<a b='>",                                                                     "section 0: line 1: an element is cut off"                   },
      {"customdata",       "<a><![CDATA[</b>--><]]></a>",                                                 ""                                                           },
      {"customdata",       "<a><![CDATA[></a>",
       "section 0: line 1: a comment or an instruction is not ended"                                                                                                   },
      {"customdata",       "<!DOCTYPE a",                                                                 "section 0: line 1: a comment or an instruction is not ended"},
      {"customdata",       "<?a ><b/>",                                                                   "section 0: line 1: a comment or an instruction is not ended"},
      {"customdata",       nested(512),                                                                   ""                                                           },
      {"customdata",       nested(513),                                                                   "section 0: line 1: elements are nested too deeply"          },
      {"assetinfo\nnote=", start + "*AssetInfo=\n",                                                       "header: the key of line 8 is not known"                     },
      {"other",            start + "*Other=\n",                                                           "section 0: its type is not known"                           },
      {"other",            start + "+Other=\n",
       "section 0: its type is not known; section 0: line 3 is missing: a branch is not ended"                                                                         },
      {"other",            "<?xml ?><a>",
       "section 0: its type is not known; section 0: line 1: an element is not ended"                                                                                  },
      {"other",            "<a>",                                                                         "section 0: its type is not known"                           },
  };
  for (const auto& [type, text, message] : cases) {
    const bool raw = std::string_view(type) == "customdata";
    const std::string data = raw ? zlibStream(text) : blob(text);
    std::string file = fileOfOne(type, data);
    if (std::string_view(type) == "snapshot") file.replace(file.find("count=0"), 7, "count=1");
    const auto container = Container::parse(file);
    ASSERT_TRUE(container) << container.error().message;
    const std::vector<Problem> problems = check(*container);
    std::string messages;
    for (const Problem& each : problems) messages += (messages.empty() ? "" : "; ") + each.message;
    EXPECT_EQ(messages, message) << text;
  }
}

}  // namespace huxread
