#include <gtest/gtest.h>

#include <string>

#include "machine/profiler/tables.h"
#include "machine/valueText.h"
#include "support/shortForm.h"

// What the profiler says of connections, printers, software, settings and small devices, in the
// spellings of old and new systems.

namespace {

using namespace machine;
using namespace machine::profiler;

// What data types say, in short forms.
Description described(std::string_view types) {
  const std::string document = "<plist><array>" + elementsOf(types) + "</array></plist>";
  const auto host = platform::makeHost();
  const auto profile = Profile::open(document, *host);
  Description machine(Source::Debug);
  EXPECT_TRUE(profile);
  if (!profile) return machine;
  Row& asset = machine[tableAt("machine")].rows.emplace_back(std::size(schema::kMachine));
  asset[columnAt("machine", "scanned_at")] = "2024-11-21T16:22:05+01:30";
  readProfiledAdapters(*profile, machine);
  readProfiledPrinters(*profile, machine);
  readProfiledSoftware(*profile, machine);
  readProfiledSettings(*profile, machine);
  readProfiledDevices(*profile, machine);
  EXPECT_EQ(profile->unreadable(), 0U);
  return machine;
}

// A line for each row: "column=value|column=value", what is not known left out.
std::string rows(const Description& machine, std::string_view table) {
  const Table& schema = *findTable(table);
  const TableData& data = machine[tableAt(table)];
  std::string text = data.recorded ? "" : "not recorded";
  for (const Row& row : data.rows) {
    text += "\n";
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (!isKnown(row[i])) continue;
      text += (text.back() == '\n' ? "" : "|") + std::string(schema.columns[i].name) + "=" +
              valueText(row[i]);
    }
  }
  return text;
}

TEST(ProfilerSoftware, TellsTheSpellingsOfAllSystems) {
  const Description machine = described(R"(
      {_dataType=SPApplicationsDataType; _items=[
        {_name=Newer; path=/A/Newer.app; location=/B; arch_kind=arch_arm;
          obtained_from=ios_app_store; signed_by=[One; #1; Two]; version=#7;
          lastModified=<date>2024-04-30T22:45:00Z</date>};
        {_name=Older; location=/A/Older.app; runtime_environment=arch_x86;
          has64BitIntelCode=no; app_store=yes; obtained_from=unknown;
          lastModified=<date>2024-04-30T22:15:00Z</date>};
        {runtime_environment=arch_x86; has64BitIntelCode=yes; app_store=no};
        {runtime_environment=universal; obtained_from=identified_developer};
        {arch_kind=arch_web; obtained_from=elsewhere; lastModified=today};
        {_name=[]; path=<true/>; arch_kind=#1}]})");
  EXPECT_EQ(rows(machine, "software"), R"(
path=/A/Newer.app|name=Newer|version=7|architecture=arm64|is_64bit=true|origin=app_store|signed_by=One, Two|modified_on=2024-05-01
path=/A/Older.app|name=Older|architecture=i386|is_64bit=false|origin=app_store|modified_on=2024-04-30
architecture=x86_64|is_64bit=true
architecture=universal|origin=identified_developer)");
}

TEST(ProfilerSoftware, AdaptersJoinWhatTheirPartsSay) {
  const Description machine = described(R"(
      {_dataType=SPNetworkDataType; _items=[
        {_name=LAN; interface=en0; ip_address=[192.0.2.1; 2001:db8::1; 192.0.2.2];
          SubnetMasks=[255.0.0.0; 255.255.0.0];
          IPv4={SubnetMasks=[255.0.0.0]; ConfigMethod=Manual};
          DNS={SearchDomains=[a.example; b.example]}};
        {interface=en1; ip_address=192.0.2.3; Ethernet={MAC Address=f8:4d:89:00:11:22};
          IPv4={SubnetMasks=[255.0.0.0]; Router=192.0.2.254};
          IPv6={Addresses=[fe80::1]}; dhcp={dhcp_server_identifier=192.0.2.253}};
        {interface=en2; IPv4=[]; ip_address=[]}]};
      {_dataType=SPAirPortDataType; _items=[
        {spairport_airport_interfaces=[
            {_name=en1; spairport_current_network_information={_name=Lobby}};
            {_name=en2; spairport_current_network_information={_name=<string>&lt;redacted&gt;</string>}}]}]})");
  EXPECT_EQ(rows(machine, "adapters"), R"(
interface=en0|name=LAN|ip_addresses=192.0.2.1, 192.0.2.2|subnet_masks=255.0.0.0, 255.255.0.0|ipv6_addresses=2001:db8::1|method=Manual|dns_domain=a.example, b.example
interface=en1|mac_address=F8-4D-89-00-11-22|subnet_masks=255.0.0.0|gateway=192.0.2.254|ipv6_addresses=fe80::1|dhcp_server=192.0.2.253|wifi_network=Lobby
interface=en2)");
}

TEST(ProfilerSoftware, PrintersAreWhatPrintsOrScans) {
  const Description machine = described(R"(
      {_dataType=SPPrintersDataType; _items=[
        {_name=A; default=yes; scanner=no; scannerUUID=U};
        {_name=B; default=no; scanner=unknown; scannerappbundlepath=/S};
        {_name=C; scanner=yes; scannerUUID=U; uri=u};
        {_name=D; scanner=unknown};
        {status=no_info_found}]})");
  EXPECT_EQ(rows(machine, "printers"), R"(
name=A|kind=printer|default=true
name=B|kind=multifunction|default=false|scanner_app=/S
name=C|kind=scanner|scanner_uuid=U)");
}

TEST(ProfilerSoftware, RulesOfTheFirewallStandInAnyMode) {
  const Description machine = described(R"(
      {_dataType=SPFirewallDataType; _items=[
        {spfirewall_globalstate=spfirewall_globalstate_off; spfirewall_loggingenabled=No;
          spfirewall_services={SSH=spfirewall_allow_local};
          spfirewall_applications={a=spfirewall_allow_all; b=spfirewall_block_all;
            c=spfirewall_perhaps; d=[]}};
        {spfirewall_globalstate=spfirewall_globalstate_limit_connections;
          spfirewall_services=none}]})");
  EXPECT_EQ(rows(machine, "firewall"), R"(
kind=global|name=mode|setting=allow_all
kind=global|name=logging|setting=off
kind=service|name=SSH|setting=local_only
kind=application|name=a|setting=allow
kind=application|name=b|setting=block
kind=application|name=c
kind=application|name=d
kind=global|name=mode|setting=limit)");
}

TEST(ProfilerSoftware, PowerAndBatteriesInTheKeysOfAllSystems) {
  const Description machine = described(R"(
      {_dataType=SPPowerDataType; _items=[
        {_name=sppower_information;
          AC Power={System Sleep Timer=#0; Wake On LAN=<true/>; LowPowerMode=#1;
            Display Sleep Timer=[]}};
        {_name=spbattery_information;
          sppower_battery_health_info={sppower_battery_health_maximum_capacity=99%};
          sppower_battery_charge_info={sppower_battery_state_of_charge=#80;
            sppower_battery_current_capacity=#1; sppower_battery_max_capacity=#2}};
        {_name=spbattery_information; sppower_battery_installed=TRUE;
          sppower_battery_health_info={sppower_battery_health_maximum_capacity=1000000000%};
          sppower_battery_charge_info={sppower_battery_current_capacity=#5127;
            sppower_battery_max_capacity=#6204}};
        {_name=spbattery_information;
          sppower_battery_charge_info={sppower_battery_is_charging=TRUE;
            sppower_battery_state_of_charge=#-1; sppower_battery_max_capacity=#0;
            sppower_battery_current_capacity=#9223372036854775807}};
        {_name=spbattery_information; sppower_battery_installed=FALSE;
          sppower_battery_health_info={sppower_battery_health=Good}};
        {_name=spbattery_information}]})");
  EXPECT_EQ(rows(machine, "power"),
            "\nprofile=AC Power|system_sleep_min=0|wake_on_lan=true|low_power_mode=true");
  EXPECT_EQ(rows(machine, "battery"), R"(
maximum_capacity_pct=99|charge_pct=80
charge_pct=83
charging=true)");
}

TEST(ProfilerSoftware, DevicesOfEachKind) {
  const Description machine = described(R"(
      {_dataType=SPBluetoothDataType; _items=[
        {controller_properties={controller_chipset=C1};
          device_connected=[{Pods={device_address=aa:bb:cc:00:11:22;
                device_serialNumber=S1}}];
          device_not_connected=[{Mouse={}}]};
        {device_title=[{Keys={device_addr=aa-bb-cc-00-11-22;
                device_isconnected=attrib_No}}]};
        {device_title=[text]; device_connected=text}]};
      {_dataType=SPAudioDataType; _items=[
        {_name=hda_compatible_hardware; _items=[{_name=jack}]};
        {_name=coreaudio_device; _items=[
            {_name=Mic; coreaudio_device_transport=coreaudio_device_type_usb};
            {_name=All; coreaudio_device_transport=coreaudio_device_type_unknown}]}]};
      {_dataType=SPThunderboltDataType; _items=[
        {_name=bus; _items=[
            {device_name_key=Dock; _items=[{_name=Disk}]}]}]};
      {_dataType=SPCardReaderDataType; _items=[
        {_name=spcardreader; spcardreader_vendor-id=0x05ac;
          _items=[{_name=card}]}]};
      {_dataType=SPAirPortDataType; _items=[
        {spairport_airport_interfaces=[
            {_name=en0;
              spairport_wireless_card_type=spairport_wireless_card_type_wifi (0x14E4, 0x4387)};
            {_name=awdl0}]}]})");
  EXPECT_EQ(rows(machine, "devices"), R"(
kind=bluetooth|name=C1
kind=bluetooth|name=Pods|address=AA-BB-CC-00-11-22|serial=S1|connected=true
kind=bluetooth|name=Mouse|connected=false
kind=bluetooth|name=Keys|address=AA-BB-CC-00-11-22|connected=false
kind=audio|name=Mic|connection=USB
kind=audio|name=All
kind=thunderbolt|name=Dock
kind=thunderbolt|name=Disk
kind=card_reader|name=Card Reader|manufacturer=0x05ac
kind=wifi|name=en0|model=(0x14E4, 0x4387))");
}

TEST(ProfilerSoftware, TellsEmptyFromNotRecorded) {
  const auto machine =
      described("{_dataType=SPPowerDataType; _items=[]}; {_dataType=SPCameraDataType; _items=[]}");
  for (const char* table : {"power", "battery", "devices"})
    EXPECT_EQ(rows(machine, table), "") << table;
  for (const char* table : {"adapters", "printers", "software", "firewall"}) {
    EXPECT_EQ(rows(machine, table), "not recorded") << table;
  }
}

}  // namespace
