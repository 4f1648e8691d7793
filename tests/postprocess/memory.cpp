#include "postprocess/memory.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "postprocess/computerSystem.h"
#include "shortForms.h"
#include "support/fakeHost.h"

namespace {

std::string written(std::string_view slots, std::string_view hardware) {
  const kevaDoc raw = rawDocument({"SPMemoryDataType", slots, "SPHardwareDataType", hardware});
  return snapshotOf(PostProcessMemory, raw);
}

}  // namespace

// Of a slot's size seven digits count, of the whole memory all.
TEST(Memory, NumbersTheSlotsOfAllBanksOn) {
  EXPECT_EQ(written(R"({_items=[{dimm_status=ok; dimm_size=12 ZB}]}; {dimm_status=#1; dimm_size=x};
{_items=[{dimm_status=ok; dimm_size=16777217 MB}]})",
                    "{physical_memory=16777217 MB}; {physical_memory=x}"),
            lines(R"(+Snapshot= | +Memory= | *Memory-slot:1= | used=1 | capacity=0 | speed=
*Memory-slot:2= | used=0 | *Memory-slot:3= | used=1 | capacity=16777216 | speed=
*General-info= | physical-memory=16777217 | - | -)"));
  EXPECT_EQ(written("{_items=[no slot]}", ""), lines("+Snapshot= | *Memory= | -"));
}

TEST(ComputerSystem, HasAModelEvenIfItIsNotKnown) {
  FakeHost host;
  const kevaDoc raw = rawDocument({"SPHardwareDataType", "{_name=overview; machine_name=Mac}"});
  EXPECT_EQ(snapshotOf(PostProcessComputerSystem, raw, host),
            lines(R"(+Snapshot= | +System= | *Computer-system= | model= | uuid=
*Chassis= | manuf=Apple Inc. | - | -)"));
}

TEST(Memory, CannotGoOnAfterASizeThatIsNone) {
  FakeHost host;
  for (const std::string size : {"GB", "", "#4"}) {
    const std::string slot = "{dimm_status=ok; dimm_size=" + size + "}";
    EXPECT_THROW(written(slot, ""), std::out_of_range);
    EXPECT_THROW(snapshotOf(PostProcessComputerSystem,
                            rawDocument({"SPMemoryDataType", "{_items=[" + slot + "]}"}), host),
                 std::out_of_range);
    EXPECT_THROW(written("", "{physical_memory=" + size + "}"), std::out_of_range);
  }
}
