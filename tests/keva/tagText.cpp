#include "bytes.h"

TEST(TagText, WritesValuesByTheirKind) {
  for (const auto& [value, text] : {
           std::pair{TagValue(true),                    "*a=true\n"                },
           {TagValue(false),                   "*a=false\n"               },
           {TagValue(std::int64_t{INT64_MIN}), "*a=-9223372036854775808\n"},
           {TagValue(-2.675),                  "*a=-2.67\n"               },
           {TagValue("+ b=c\n~"),              "*a=+ b=c\r~\n"            }
  }) {
    Tag tag("a");
    tag.setValue(value);
    EXPECT_EQ(written(tag), text);
    EXPECT_EQ(tag.textSize(true), std::string_view(text).size());
  }
}

TEST(TagText, WritesPropertiesThenAttributesThenChildren) {
  kevaDoc document(true, "Top");
  Tag& top = document.top();
  top.child("leaf")->addProperty("p", "1");
  top.child("branch")->child("leaf")->setAttribute("size", TagValue(std::int64_t{1024}));
  top.setAttribute("a", TagValue("x"), "q", "=");
  top.addProperty("p", "2");
  top.addProperty("p", "2");
  top.setValue(TagValue("v"));
  const std::string start = kTextHeader + "+Top=v\n~p=2\n~p=2\na=x\n~q==\n";
  const std::string whole = start + "*leaf=\n~p=1\n+branch=\n*leaf=\nsize=1024\n-\n-\n";
  testing::internal::CaptureStderr();
  EXPECT_EQ(written(document.holder()), whole);
  // Support looks for this line; leaves with properties have none.
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tag >>Top<< :\n");
  EXPECT_EQ(written(document.holder(), true, false) + "-\n", whole);
  EXPECT_EQ(written(document.holder(), true, true), start);
  document.set("Second/tag", TagValue("x"));  // the estimate knows the top tag alone
  EXPECT_EQ(document.textSize(), whole.size() + 102);
  EXPECT_EQ(document.holder().textSize(true), start.size() - 2 * 5);  // without its properties
  const Tag leaf(Tag::Kind::Leaf, "child");                           // not written, but counted
  EXPECT_EQ(written(leaf), "*=\n");
  EXPECT_EQ(leaf.textSize(false), 3U + 8U);
}
