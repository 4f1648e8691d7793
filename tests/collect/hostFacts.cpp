#include "collect/hostFacts.h"

#include <gtest/gtest.h>

#include "support/fakeHost.h"

// Usual machines and their connections stand in the golden snapshots.

// Monitors are looked for in the last data type: their own is missing.
TEST(HostFacts, AreThoseOfTheFirstItems) {
  FakeHost host;
  const auto profile = host.parsePropertyList(R"(<array>
      <dict><key>_dataType</key><string>SPHardwareDataType</string><key>_items</key><array>
        <dict><key>physical_memory</key><string>8</string>
          <key>packages</key><real>2.9</real></dict>
        <dict><key>machine_model</key><string>second</string></dict>
      </array></dict>
      <dict><key>_dataType</key><string>SPSoftwareDataType</string><key>_items</key><array>
        <dict><key>user_name</key><string>Ann (Lab) Example (ann)</string>
          <key>local_host_name</key><string>lab</string>
          <key>os_version</key><string>OS X 10.8.5 (12F45)</string></dict>
      </array></dict>
      <dict><key>_dataType</key><string>SPSerialATADataType</string><key>_items</key><array>
        <dict><key>_items</key><array>
          <dict><key>volumes</key><array>
            <dict><key>free_space</key><string>40,25 GB</string></dict>
            <dict><key>free_space</key><string>512 MB</string></dict>
            <dict><key>free_space</key><string>-</string></dict>
          </array></dict>
        </array></dict>
      </array></dict>
      <dict><key>_dataType</key><string>SPPowerDataType</string><key>_items</key><array>
        <dict><key>spdisplays_ndrvs</key><array>
          <dict><key>spdisplays_main</key><string>spdisplays_yes</string>
            <key>_spdisplays_edid</key>
            <string>0x0000000000000000000000000000000000000000006542</string></dict>
        </array></dict>
      </array></dict></array>)");
  ASSERT_TRUE(profile);
  const HostFacts facts = collectSoftwareHardwareFacts(host, *profile);
  EXPECT_EQ(facts.packageCount + "|" + facts.physicalMemory + "|" + facts.systemModel + "|" +
                facts.userName + "|" + facts.diskFree + "|" + facts.monitorDiagonal,
            "2|0||ann|40.8|48");  // 47.501 inches
  EXPECT_EQ(facts.localHostName + "|" + facts.osName + "|" + facts.osVersion,
            "lab|OS X v10.8 (Mountain Lion)|Update 5 Version(build) 10.8.5 (12F45)");
}

TEST(HostFacts, TakeTheProfilersUuidWhenTheCommandsIsCut) {
  FakeHost host;
  platformUuid(host);
  std::string& printed = host.outputs[host.commands.back()];
  const auto profile = host.parsePropertyList(R"(<array>
      <dict><key>_dataType</key><string>SPHardwareDataType</string><key>_items</key><array>
        <dict><key>platform_UUID</key><string>5B0C-7A1E</string></dict></array></dict></array>)");
  for (const auto& [text, uuid] : {
           std::pair{"",      "5B0C-7A1E"},
           {"5B0C-", "5B0C-7A1E"},
           {"7A1E",  "7A1E"     }
  }) {
    printed = text;
    EXPECT_EQ(collectSoftwareHardwareFacts(host, *profile).platformUuid, uuid) << text;
  }
}
