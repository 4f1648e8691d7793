#include "postprocess/disks.h"

#include <gtest/gtest.h>

#include "shortForms.h"

TEST(Disks, RunTheirNumbersThroughAllBuses) {
  const kevaDoc raw = rawDocument(
      {"SPNVMeDataType", "{_items=[{device_model=BLADE; device_serial=#7}]}",
       "SPParallelATADataType", "{_items=[{device_model=CD-2}]}; {_items=[{device_serial=S-3}]}",
       "SPParallelSCSIDataType", R"({_items=[{device_model=no size};
        {size=36.4 GB; volumes=[{_name=Raid; file_system=HFS}]}]})",
       "SPSerialATADataType", R"({_items=[{smart_status=Not Supported; device_model=DVD-1;
          device_serial=unread}; {smart_status=Not Supported}; {device_model=DVD-2}]};
{_items=[{volumes=[{size=9 GB}; {_name=Boot; mount_point=/; file_system=#5}; {_name=Data}];
          smart_status=Verified; device_revision=2.0; device_serial=S-1; size=465 GB;
          size_in_bytes=#500999999999; device_model=ROTOR 500}]})"});
  kevaDoc snapshot(true, "Snapshot");
  PostProcessDisks(snapshot, raw);
  EXPECT_EQ(textOf(snapshot), lines(R"(+Snapshot= | +Storage= | +Physical-disks=
*CD:1= | model=DVD-1 | *CD:2= | model=DVD-2
*HDD:1= | model=ROTOR 500 | interface=SATA | mediatype=3 | ~type=media-type
size=500 | ~base-value=500999999999 | serial=S-1 | fw-rev=2.0 | partitions=2
*HDD:2= | interface=SCSI | mediatype=3 | ~type=media-type
size=39 | ~base-value=39084202393 | partitions=1
*CD:3= | model=CD-2 | *CD:4=
*HDD:3= | model=BLADE | interface=PCI-Express | mediatype=3 | ~type=media-type
size=0 | ~base-value=0 | serial=7 | partitions=0 | -
+Logical-disks= | *partition:1=Boot | ~file-sys= | mount-point=/ | *partition:2=Data
*partition:3=Raid | ~file-sys=HFS | - | - | -)"));
  // The text form shows both alike: on SCSI the media type is a text.
  const Tag& disks = *snapshot.top().findChild("Storage")->findChild("Physical-disks");
  EXPECT_NE(disks.findChild("HDD:1")->findAttribute("mediatype")->value().integer(), nullptr);
  EXPECT_NE(disks.findChild("HDD:2")->findAttribute("mediatype")->value().text(), nullptr);
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
