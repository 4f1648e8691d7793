#include "base/sharedText.h"

#include <gtest/gtest.h>

#include <memory>

TEST(SharedText, KeepsItsBytesAsLongAsAPartOfThemIsLeft) {
  auto whole = std::make_unique<SharedText>("a text too long for a short string");
  const char* bytes = whole->bytes();
  SharedText part = whole->part(whole->substr(2, 4));
  const SharedText copy = part;
  whole.reset();
  EXPECT_EQ(part.data(), bytes + 2);
  part = SharedText("another");
  EXPECT_EQ(copy, "text");
  const SharedText moved = std::move(part);
  EXPECT_EQ(moved, "another");
  EXPECT_EQ(part, "");  // NOLINT(bugprone-use-after-move): as it says
  EXPECT_NE(part.data(), nullptr);
  EXPECT_EQ(SharedText("").bytes(), nullptr);
}
