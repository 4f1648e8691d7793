#include "postprocess/partition.h"

#include <gtest/gtest.h>

#include "shortForms.h"

namespace {

// What is written to a partition "P" of a volume with these keys.
std::string written(const std::string& keys) {
  const kevaDoc raw = rawDocument({"SPStorageDataType", "{" + keys + "}"});
  kevaDoc document(true, "P");
  const Item volume = items(raw, "SPStorageDataType").front();
  writePercentages(writeAmounts(volume, document.top()), document.top());
  return textOf(document);
}

}  // namespace

TEST(Partition, MakesTheBestOfWhatIsMissingOrNoSize) {
  for (const char* none : {"size=GB", "size=#7", "size=1 GB; size_in_bytes=9"}) {
    EXPECT_EQ(written(none), lines("*P= | size=0.0 | ~base-value=0 | ~units=MB")) << none;
  }
  EXPECT_EQ(written("size=1 GB"), lines("*P= | size=1.00 | ~base-value=1073741824"));
  // What no disk has, and still an answer: the difference wraps around.
  EXPECT_EQ(written("free_space_in_bytes=#-9223372036854775808"), lines(R"(*P=
free=-8796093022208.0 | ~base-value=-9223372036854775808 | ~units=MB
used=-8796093022208.0 | ~base-value=-9223372036854775808 | ~units=MB)"));
}
