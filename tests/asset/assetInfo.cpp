#include "asset/assetInfo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/documents.h"

using testing::HasSubstr;

// Whole records stand in the golden snapshots.

TEST(AssetInfo, KnowsVirtualMachinesByTheirModel) {
  const std::pair<const char*, const char*> cases[] = {
      {"Parallels on VMWARE", "nvtVMware"    },
      {"ParallelsVirtualBox", "nvtVirtualBox"},
      {"PARALLELS16,1",       "nvtParallels" },
  };
  AssetFacts facts;
  for (const auto& [model, virtualType] : cases) {
    facts.host.systemModel = model;
    EXPECT_THAT(textOf(*buildAssetInfo(facts, kevaDoc(true, "Snapshot"), true)),
                HasSubstr(std::string("\nvirtual-type=") + virtualType + "\n"));
  }
}

TEST(AssetInfo, RepeatsWhatTheSnapshotKnows) {
  kevaDoc snapshot(true, "Snapshot");
  EXPECT_THAT(textOf(*buildAssetInfo(AssetFacts(), snapshot, true)),
              HasSubstr("\ndomain=\nos-manuf=Apple Inc.\ncpu-count="));
  snapshot.top().child("OS")->child("os:1");
  Tag* disks = snapshot.top().child("Storage")->child("Logical-disks");
  disks->setChild("partition:1", TagValue("Recovery"))->setAttribute("mount-point", TagValue("/"));
  Tag* disk = disks->setChild("partition:2", TagValue("Data"));
  disk->setAttribute("free", TagValue(10.5), "base-value", "11274289152");
  disk->setAttribute("mount-point", TagValue("/Volumes/Data"));
  disk->setAttribute("used%", TagValue("37"));  // no number
  disks->child("partition:3")->setAttribute("free", TagValue(1.5));
  const std::string record = textOf(*buildAssetInfo(AssetFacts(), snapshot, true));
  EXPECT_THAT(record, HasSubstr("\ndomain=\nos-sp=\nos-ver=\nos-manuf=Apple Inc.\ncpu-count="));
  EXPECT_THAT(record, HasSubstr("\nmonitor-count=0\n"));
  EXPECT_THAT(record, HasSubstr("\nhdd-capacity=\n"
                                "disk:2=Data\n~free=11274289152\n~free%=100\n"
                                "disk:3=\n~free=\n~free%=100\nfw-status=5\n"));
}
