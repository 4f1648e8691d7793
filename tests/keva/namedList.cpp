#include "keva/namedList.h"

#include <gtest/gtest.h>

#include <numeric>

#include "keva/tag.h"

TEST(NamedList, FindsTheFirstOfEqualNamesAlsoInANewOrder) {
  for (const std::size_t length : {2U, 22U, 24U, 600U}) {  // look-ups are indexed from 24 on
    Tag parent("parent");
    for (std::size_t i = 0; i < length; ++i) {
      parent.addChild(Tag(std::to_string(i / 2)));
    }
    for (std::size_t i = 0; i < length; i += 2) {
      EXPECT_EQ(parent.findChild(std::to_string(i / 2)), parent.childAt(i));
    }
    parent.addChild(Tag("0"));  // must not hide the first one
    EXPECT_EQ(parent.findChild("0"), parent.childAt(0));
    std::vector<std::size_t> order(length + 1);
    std::iota(order.rbegin(), order.rend(), 0U);
    parent.reorderChildren(order);
    EXPECT_EQ(parent.findChild("0"), parent.childAt(0));
  }
}

// Any look-up that walks the siblings makes this take minutes.
TEST(NamedList, GivesTheSmallestFreeNumberAmongTensOfThousands) {
  Tag parent("parent");
  parent.child("Device:1");
  parent.child("Device:3");
  for (unsigned i = 1; i <= 100000; ++i) {
    ASSERT_EQ(parent.nextFreeIndex("Slot:"), i);
    ASSERT_EQ(parent.nextFreeIndex("Device:"), 2U);
    const std::string name = "Slot:" + std::to_string(i);
    parent.child(name);
    parent.setAttribute(name, TagValue(name));
  }
  parent.child("Device:2");
  EXPECT_EQ(parent.nextFreeIndex("Device:"), 4U);
}
