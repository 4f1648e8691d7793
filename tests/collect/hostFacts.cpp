#include "collect/hostFacts.h"

#include <gtest/gtest.h>

#include "support/fakeHost.h"

// Usual machines stand in the golden snapshots.

TEST(HostFacts, AreThoseOfTheFirstItemsAndTheActiveConnection) {
  FakeHost host;
  const auto profile = host.parsePropertyList(R"(<array>
      <dict><key>_dataType</key><string>SPNetworkDataType</string><key>_items</key><array>
        <dict><key>interface</key><string>ppp0</string>
          <key>ip_address</key><array><string>10.0.0.8</string></array></dict>
        <dict><key>interface</key><string>en2</string></dict>
        <dict><key>interface</key><string>en0</string>
          <key>ip_address</key><array><string>10.0.0.1</string><string>10.0.0.2</string></array>
          <key>Ethernet</key>
          <dict><key>MAC Address</key><string>00:1c:42:ab:cd:ef</string></dict></dict>
      </array></dict>
      <dict><key>_dataType</key><string>SPNetworkLocationDataType</string><key>_items</key><array>
        <dict><key>spnetworklocation_isActive</key><string>no</string></dict>
        <dict><key>spnetworklocation_isActive</key><string>yes</string>
          <key>spnetworklocation_services</key><array>
            <dict><key>SMB</key><dict><key>Workgroup</key><string>no address</string></dict></dict>
            <dict><key>hardware_address</key><string>00:1c:42:ab:cd:ef</string>
              <key>SMB</key><dict><key>Workgroup</key><string>Lab</string>
                <key>NetBIOSName</key><string>Kite</string></dict></dict>
          </array></dict>
      </array></dict>
      <dict><key>_dataType</key><string>SPHardwareDataType</string><key>_items</key><array>
        <dict><key>physical_memory</key><string>8</string></dict>
        <dict><key>machine_model</key><string>second</string></dict>
      </array></dict>
      <dict><key>_dataType</key><string>SPSoftwareDataType</string><key>_items</key><array>
        <dict><key>user_name</key><string>Ann (Lab) Example (ann)</string></dict>
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
      <dict><key>_dataType</key><string>SPDisplaysDataType</string><key>_items</key><array>
        <dict><key>spdisplays_ndrvs</key><array>
          <dict><key>spdisplays_main</key><string>spdisplays_yes</string>
            <key>_spdisplays_edid</key><string>0x00ff</string></dict>
        </array></dict>
      </array></dict></array>)");
  ASSERT_TRUE(profile);
  const HostFacts facts = collectSoftwareHardwareFacts(host, *profile);
  EXPECT_EQ(facts.physicalMemory + "|" + facts.systemModel + "|" + facts.userName + "|" +
                facts.diskFree + "|" + facts.monitorDiagonal,
            "0||ann|40.8|");
  const auto network = [&profile](const char* given) {
    const NetworkFacts found = collectNetworkFacts(*profile, given);
    return found.ipAddress + " " + found.macAddress + " " + found.netbiosName + found.domain;
  };
  EXPECT_EQ(network(""), "10.0.0.1 00-1C-42-AB-CD-EF KiteLAB");
  EXPECT_EQ(network("10.0.0.8"), "10.0.0.8  ");
  EXPECT_EQ(network("10.0.0.2"), "10.0.0.2  ");  // not its connection's first
}
