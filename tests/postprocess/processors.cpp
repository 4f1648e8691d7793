#include "postprocess/processors.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "shortForms.h"

namespace {

std::string written(std::string_view items) {
  return snapshotOf(PostProcessProcessors, rawDocument({"SPHardwareDataType", items}));
}

}  // namespace

// 8.07 falls short of 8070 MHz in single precision.
TEST(Processors, MakeTheBestOfOddNumbersButNotOfACacheSizeThatIsNone) {
  EXPECT_EQ(written(R"({packages=#2; number_processors=#9; l2_cache_core=256 KB;
l2_cache_share=1 MB; l3_cache=8193.9 KB; current_processor_speed=8.07 GHz})"),
            lines(R"(+Snapshot= | +Processors= | *Processor:1=CPU #1 | core-count=9
l2-cache-size=1152 | l3-cache-size=4096 | current-clock-speed=8069 | *Processor:2=CPU #2
core-count=9 | l2-cache-size=1152 | l3-cache-size=4096 | current-clock-speed=8069 | - | -)"));
  EXPECT_EQ(written("{number_processors=proc 8:4:4; number_cpus=#5; cpu_type=A}"),
            lines(R"(+Snapshot= | +Processors= | *Processor:1=A | core-count=0
current-clock-speed=0 | - | -)"));
  std::string sizes;
  for (const std::string key : {"l2_cache", "l2_cache_core", "l2_cache_size", "l2_cache_share",
                                "l3_cache", "l3_cache_core", "l3_cache_size"}) {
    const std::string text = written("{packages=#2; number_cpus=#8; " + key + "=2 MB}");
    sizes += text.substr(text.find("=8\n") + 3, 19);
  }
  EXPECT_EQ(sizes, lines(R"(l2-cache-size=1024 | l2-cache-size=8192 | l2-cache-size=8192
l2-cache-size=2048 | l3-cache-size=1024 | l3-cache-size=8192 | l3-cache-size=8192)"));
  for (const char* none : {"", "{packages=2}", "{packages=#-1}"}) {
    EXPECT_EQ(written(none), "*Snapshot=\n") << none;
  }
  const std::string many = written("{packages=#8589934592; l3_cache=16 TB}");
  EXPECT_NE(many.find("\n*Processor:1024=CPU #1024\ncore-count=1\nl3-cache-size=2\n"), many.npos);
  EXPECT_EQ(many.find("Processor:1025"), many.npos);
  EXPECT_THROW(written("{l3_cache_core=KB}"), std::out_of_range);
  EXPECT_THROW(written("{l2_cache=#512}"), std::out_of_range);
}
