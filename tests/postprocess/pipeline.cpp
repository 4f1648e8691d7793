#include "postprocess/pipeline.h"

#include <gmock/gmock.h>

#include "shortForms.h"
#include "support/fakeHost.h"

namespace {

// A machine that has something to say to every step, in another order.
kevaDoc fullRaw() {
  const char* const item = "{default=no; _items=[{removable_media=yes; bsd_name=disk9}]}";
  kevaDoc raw = rawDocument(
      {"SPFirewallDataType", item, "SPApplicationsDataType", item, "SPSoftwareDataType", item,
       "SPUSBDataType", item, "SPPrintersDataType", item, "SPNetworkDataType", item,
       "SPNVMeDataType", item, "SPDisplaysDataType", item, "SPHardwareDataType", item});
  raw.top().child("Processes");
  return raw;
}

}  // namespace

TEST(Pipeline, RunsTheStepsInOrderAndAnnouncesThemWhenToldTo) {
  FakeHost host;
  host.outputs["ls -1 /Users/"] = "jane\n";
  host.outputs["env"] = "A=b\n";
  host.bundleFolders["/Library/Internet Plug-Ins"] = {
      {"/x", "x", platform::PropertyList("")}
  };
  kevaDoc snapshot(true, "Snapshot");
  testing::internal::CaptureStdout();
  PostProcess(snapshot, fullRaw(), host, true);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "IV. PostProcess>>>\n1...done\n2...done\n3...done\n4...done\n5...done\n6...done\n"
            "7...done\n8...done\n9...done\n10...done\n11...done\n12...done\n13...done\n"
            "14...done\n15...done\nIV. PostProcess End.\n");
  std::string sections;
  for (const auto& section : snapshot.top().children()) sections += section->name() + " ";
  EXPECT_EQ(sections,
            "System Processors Memory Video Storage Network Peripherals OS User-accounts Software "
            "Libraries Processes Environment Security ");
  const std::string text = textOf(snapshot);
  EXPECT_LT(text.find("*HDD:1="), text.find("*Removable:1="));
  EXPECT_LT(text.find("*Printer:1="), text.find("*Device:1="));
  EXPECT_THAT(host.commands,
              testing::ElementsAre(testing::StartsWith("ioreg "), "diskutil info /dev/disk9",
                                   "ls -1 /Users/", R"(dscl . -read "/users/jane")", "env"));
}
