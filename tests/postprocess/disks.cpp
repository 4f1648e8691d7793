#include "postprocess/disks.h"

#include <gtest/gtest.h>

#include "shortForms.h"

// Whole machines stand in the golden snapshots, where both kinds of a media type look alike.
TEST(Disks, StateTheirMediaTypeAsATextOnScsi) {
  kevaDoc snapshot(true, "Snapshot");
  PostProcessDisks(
      snapshot,
      rawDocument({"SPParallelSCSIDataType",
                   "{_items=[{size=9 GB; volumes=[{_name=Raid; file_system=#5}]}]}",
                   "SPNVMeDataType", R"({_items=[{device_serial=#7; device_model=A;
      volumes=[{_name=disk1s2; iocontent=Apple_CoreStorage}]}]})",
                   "SPStorageDataType",
                   R"({_name=Vault; com.apple.corestorage.pv=[{_name=disk1s2; media_name=A 1}];
      com.apple.corestorage.lv={com.apple.corestorage.lv.encrypted=unknown}})"}));
  const Tag& disks = *snapshot.top().findChild("Storage")->findChild("Physical-disks");
  EXPECT_NE(disks.findChild("HDD:1")->findAttribute("mediatype")->value().text(), nullptr);
  EXPECT_NE(disks.findChild("HDD:2")->findAttribute("mediatype")->value().integer(), nullptr);
  EXPECT_EQ(textOf(snapshot, "Storage/Logical-disks/partition:1"),
            "*partition:1=Raid\n~file-sys=\n");
  EXPECT_EQ(textOf(snapshot, "Storage/Logical-disks/partition:2"),
            "*partition:2=Vault\n~kind=encrypted\n");
  EXPECT_NE(textOf(snapshot).find("\nserial=7\n"), std::string::npos);
}

TEST(Disks, StateTheirSizeInWholeDecimalGigabytes) {
  const std::pair<std::string, const char*> cases[] = {
      {"size_in_bytes=#-2500000000",          "size=-2 | ~base-value=-2500000000"},
      {"size_in_bytes=3000000000; size=9 GB", "size=0 | ~base-value=0"           },
      {"size=#9",                             "size=0 | ~base-value=0"           },
  };
  for (const auto& [keys, size] : cases) {
    const kevaDoc raw = rawDocument({"SPNVMeDataType", "{_items=[{" + keys + "}]}"});
    const std::string text = snapshotOf(PostProcessDisks, raw);
    EXPECT_EQ(text.substr(text.find("size=")),
              lines(size + std::string(" | partitions=0 | - | - | -")));
  }
}
