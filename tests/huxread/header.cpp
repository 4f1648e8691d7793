#include "huxread/header.h"

#include <gtest/gtest.h>

namespace huxread {

TEST(Header, SaysWhatIsWrongAndWhere) {
  const std::string head = "[H]\ncount=2\nsnapshotcount=1\n";
  const std::string one = head + "[1]\n";
  const std::string placed = one + "offset=0\nlength=0\n";
  const struct {
    const char* message;
    std::string text;
  } cases[] = {
      {"header: does not begin with [H]",                         ""                                 },
      {"header: line 2 is cut off",                               "[H]\ncount=2"                     },
      {"header: line 1 is no entry of a group",                   "count=2\n[H]\n"                   },
      {"header: line 4 is no entry of a group",                   head + "[1\n"                      },
      {"header: line 4 is no entry of a group",                   head + "1]\n"                      },
      {"header: line 3 repeats a key of its group",               "[H]\ncount=2\ncount=2\n"          },
      {"header: does not begin with [H]",                         "[0]\n"                            },
      {"header: count is missing",                                "[H]\nsnapshotcount=0\n"           },
      {"header: count is no number from 0 to 4294967295",         "[H]\nsnapshotcount=0\ncount=\n"   },
      {"header: snapshotcount is no number from 0 to 4294967295", "[H]\nsnapshotcount=1x\n"          },
      {"header: line 7 is no section number",                     placed + "[1x]\n"                  },
      {"section 1: length is no number from 0 to 4294967295",     one + "offset=0\nlength=x\n"       },
      {"header: snapshotcount is missing",                        "[H]\ncount=2\n"                   },
      {"header: line 4 is no section number",                     head + "[H]\n"                     },
      {"section 2: the header counts 2 sections",                 head + "[2]\n"                     },
      {"section 1: length is missing",                            one + "offset=1\n"                 },
      {"section 1: offset is no number from 0 to 4294967295",     one + "offset=-1\n"                },
      {"section 1: offset is no number from 0 to 4294967295",     one + "offset=4294967296\n"        },
      {"section 1: the header lists it twice",                    placed + placed.substr(head.size())},
  };
  for (const auto& [message, text] : cases) {
    const auto sections = parseHeader(text);
    EXPECT_EQ(sections ? "" : sections.error().message, message) << text;
  }
  const auto full = parseHeader(placed + "type=snapshot\ntimestamp=t\nsnaptype=\nID=\n[0]\n" +
                                placed.substr(one.size()));
  ASSERT_TRUE(full) << full.error().message;
  EXPECT_TRUE(full->remarks.empty());
  EXPECT_EQ(full->sections[1].timestamp, "t");
  EXPECT_EQ(parseHeader("[H]\nnote=\ncount=0\nsnapshotcount=0\n")->remarks,
            std::vector<std::string>{"header: the key of line 2 is not known"});
}

}  // namespace huxread
