#include "bytes.h"

TEST(Tag, SetsValuesAndKeepsProperties) {
  Tag top("top");
  top.setAttribute("size", TagValue("4 GB"), "units", "gb");
  top.setAttribute("size", TagValue("8 GB"), "units", "mb");
  top.setAttribute("size", TagValue());
  TagAttribute* none = top.setAttribute("none", TagValue(), "complex");
  none->addProperty("complex", "1");
  none->setProperty("complex", "2");
  top.setChild("a", TagValue(std::int64_t{7}));
  top.setChild("a", TagValue());  // replaces, unlike an attribute's
  EXPECT_EQ(top.attributeAt(1), none);
  EXPECT_EQ(top.attributeAt(2), nullptr);
  EXPECT_EQ(top.childAt(1), nullptr);
  EXPECT_EQ(written(top), "+top=\nsize=8 GB\n~units=gb\nnone=\n~complex=2\n~complex=1\n*a=\n-\n");
}

TEST(Tag, CopiesEverythingBelowIt) {
  kevaDoc original(true, "Top");
  original.set("/a", TagValue(true), "units", "u");
  original.top().setChild("child", TagValue(0.25))->child("grandchild")->addProperty("p", "q");
  Tag other("other");
  other.setAttribute("gone", TagValue("x"));
  other.child("gone");
  other.copyFrom(original.top());
  other.copyFrom(other);
  EXPECT_EQ(written(other), written(original.top()));
}
