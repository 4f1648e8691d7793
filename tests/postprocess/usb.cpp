#include "postprocess/usb.h"

#include <gmock/gmock.h>

#include "shortForms.h"
#include "support/fakeHost.h"

namespace {

// Runs the step over the devices of one bus.
void run(kevaDoc& snapshot, const std::string& devices, FakeHost& host) {
  PostProcessUsb(snapshot, rawDocument({"SPUSBDataType", "{_items=[" + devices + "]}"}), host);
}

}  // namespace

// Sizes are rounded above 11 GB alone.
TEST(Usb, RoundsTheSizesOfMedia) {
  const std::pair<std::string, const char*> cases[] = {
      {"15.3 GB",  "15"},
      {"15.45 GB", "16"},
      {"11.41 GB", "12"},
      {"11.39 GB", "11"},
      {"10.99 GB", "10"},
      {"GB",       "0" },
      {"#7",       "0" }
  };
  for (const auto& [size, rounded] : cases) {
    FakeHost host;
    kevaDoc snapshot(true, "Snapshot");
    run(snapshot, "{removable_media=yes; size=" + size + "}", host);
    EXPECT_EQ(textOf(snapshot, "Storage/Physical-disks/Removable:1"),
              lines(std::string("*Removable:1= | media-type=2 | size=") + rounded +
                    " | interface=USB | partitions=0"))
        << size;
  }
}

TEST(Usb, HandsNoOddDeviceNameToTheShell) {
  FakeHost host;
  kevaDoc snapshot(true, "Snapshot");
  for (const std::string name :
       {"a|ls", "a b", "$HOME", "`ls`", "../a", "a'", "", "#2", "a*", "a>b", "disk\xC3\xA9",
        "AZaz09._-", "BCDEFGHIJKLMNOPQRSTUVWXY", "bcdefghijklmnopqrstuvwxy12345678"}) {
    run(snapshot, "{removable_media=yes; bsd_name=" + name + "}", host);
  }
  EXPECT_THAT(host.commands,
              testing::ElementsAre("diskutil info /dev/AZaz09._-",
                                   "diskutil info /dev/BCDEFGHIJKLMNOPQRSTUVWXY",
                                   "diskutil info /dev/bcdefghijklmnopqrstuvwxy12345678"));
}

TEST(Usb, ReadsTheNameOfAMedium) {
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"   Node: disk2\n   Device / Media Name:      Acme Stick Media\n\n", "Acme Stick"        },
      {"Device / Media Name: Stick\n\n   Volume Name:      none\n   Whole", "Stick"             },
      {"Device / Media Name: A\n Volume Name: x\n Media\n",                 "A\n Volume Name: x"},
      {"Device / Media Name: Stick Media",                                  {}                  },
      {"Volume Name: x\nMedia Name: Stick Media\n",                         {}                  },
  };
  for (const auto& [output, name] : cases) EXPECT_EQ(parseMediaName(output), name) << output;
}
