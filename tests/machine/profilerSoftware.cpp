#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "machine/profiler/tables.h"

// What the profiler says of connections, printers, software, settings and small devices, in the
// spellings of old and new systems.

namespace {

using namespace machine;
using namespace machine::profiler;

// Elements of a property list; a value that is no element is a text.
std::string element(const std::string& value) {
  return value.starts_with('<') ? value : "<string>" + value + "</string>";
}

std::string list(std::initializer_list<std::string> elements) {
  std::string xml;
  for (const std::string& one : elements) xml += element(one);
  return "<array>" + xml + "</array>";
}

std::string dict(std::initializer_list<std::pair<std::string, std::string>> entries) {
  std::string xml;
  for (const auto& [key, value] : entries) xml += "<key>" + key + "</key>" + element(value);
  return "<dict>" + xml + "</dict>";
}

std::string type(const std::string& name, std::initializer_list<std::string> items) {
  return dict({
      {"_dataType", name       },
      {"_items",    list(items)}
  });
}

Description described(std::initializer_list<std::string> types) {
  const std::string document = "<plist>" + list(types) + "</plist>";
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

std::string shown(const Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  return std::string(textOf(value));
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
              shown(row[i]);
    }
  }
  return text;
}

TEST(ProfilerSoftware, TellsTheSpellingsOfAllSystems) {
  const Description machine = described({
      type("SPApplicationsDataType",
           {dict({{"_name", "Newer"},
                  {"path", "/A/Newer.app"},
                  {"location", "/B"},
                  {"arch_kind", "arch_arm"},
                  {"obtained_from", "ios_app_store"},
                  {"signed_by", list({"One", "<integer>1</integer>", "Two"})},
                  {"lastModified", "<date>2024-04-30T22:45:00Z</date>"},
                  {"version", "<integer>7</integer>"}}),
                                      dict({{"_name", "Older"},
                  {"location", "/A/Older.app"},
                  {"runtime_environment", "arch_x86"},
                  {"has64BitIntelCode", "no"},
                  {"app_store", "yes"},
                  {"obtained_from", "unknown"},
                  {"lastModified", "<date>2024-04-30T22:15:00Z</date>"}}),
                                      dict({{"runtime_environment", "arch_x86"},
                  {"has64BitIntelCode", "yes"},
                  {"app_store", "no"}}),
                                      dict({{"runtime_environment", "universal"}, {"obtained_from", "identified_developer"}}),
                                      dict({{"arch_kind", "arch_web"},
                  {"obtained_from", "elsewhere"},
                  {"lastModified", "today"}}),
                                      dict({{"_name", list({})},
                  {"path", "<true/>"},
                  {"arch_kind", "<integer>1</integer>"}})}
           )
  });
  EXPECT_EQ(rows(machine, "software"), R"(
path=/A/Newer.app|name=Newer|version=7|architecture=arm64|is_64bit=true|origin=app_store|signed_by=One, Two|modified_on=2024-05-01
path=/A/Older.app|name=Older|architecture=i386|is_64bit=false|origin=app_store|modified_on=2024-04-30
architecture=x86_64|is_64bit=true
architecture=universal|origin=identified_developer)");
}

TEST(ProfilerSoftware, AdaptersJoinWhatTheirPartsSay) {
  const Description machine = described({
      type(
          "SPNetworkDataType",
          {dict({{"_name", "LAN"},
                 {"interface", "en0"},
                 {"ip_address", list({"192.0.2.1", "2001:db8::1", "192.0.2.2"})},
                 {"SubnetMasks", list({"255.0.0.0", "255.255.0.0"})},
                 {"IPv4", dict({{"SubnetMasks", list({"255.0.0.0"})}, {"ConfigMethod", "Manual"}})},
                 {"DNS", dict({{"SearchDomains", list({"a.example", "b.example"})}})}}),
            dict({{"interface", "en1"},
                 {"ip_address", "192.0.2.3"},
                 {"Ethernet", dict({{"MAC Address", "f8:4d:89:00:11:22"}})},
                 {"IPv4", dict({{"SubnetMasks", list({"255.0.0.0"})}, {"Router", "192.0.2.254"}})},
                 {"IPv6", dict({{"Addresses", list({"fe80::1"})}})},
                 {"dhcp", dict({{"dhcp_server_identifier", "192.0.2.253"}})}}),
            dict({{"interface", "en2"}, {"IPv4", list({})}, {"ip_address", list({})}})}
          ),
      type(
          "SPAirPortDataType",
          {dict(
              {{"spairport_airport_interfaces",
                list({dict({{"_name", "en1"},
                            {"spairport_current_network_information", dict({{"_name", "Lobby"}})}}),
                      dict({{"_name", "en2"},
                            {"spairport_current_network_information",
                             dict({{"_name", "&lt;redacted&gt;"}})}})})}})             }
          )
  });
  EXPECT_EQ(rows(machine, "adapters"), R"(
interface=en0|name=LAN|ip_addresses=192.0.2.1, 192.0.2.2|subnet_masks=255.0.0.0, 255.255.0.0|ipv6_addresses=2001:db8::1|method=Manual|dns_domain=a.example, b.example
interface=en1|mac_address=F8-4D-89-00-11-22|subnet_masks=255.0.0.0|gateway=192.0.2.254|ipv6_addresses=fe80::1|dhcp_server=192.0.2.253|wifi_network=Lobby
interface=en2)");
}

TEST(ProfilerSoftware, PrintersAreWhatPrintsOrScans) {
  const Description machine = described({
      type("SPPrintersDataType",
           {dict({{"_name", "A"}, {"default", "yes"}, {"scanner", "no"}, {"scannerUUID", "U"}}),
                                  dict({{"_name", "B"},
                  {"default", "no"},
                  {"scanner", "unknown"},
                  {"scannerappbundlepath", "/S"}}),
                                  dict({{"_name", "C"}, {"scanner", "yes"}, {"scannerUUID", "U"}, {"uri", "u"}}),
                                  dict({{"_name", "D"}, {"scanner", "unknown"}}), dict({{"status", "no_info_found"}})}
           )
  });
  EXPECT_EQ(rows(machine, "printers"), R"(
name=A|kind=printer|default=true
name=B|kind=multifunction|default=false|scanner_app=/S
name=C|kind=scanner|scanner_uuid=U)");
}

TEST(ProfilerSoftware, RulesOfTheFirewallStandInAnyMode) {
  const Description machine = described({
      type("SPFirewallDataType",
           {dict({{"spfirewall_globalstate", "spfirewall_globalstate_off"},
                  {"spfirewall_loggingenabled", "No"},
                  {"spfirewall_services", dict({{"SSH", "spfirewall_allow_local"}})},
                  {"spfirewall_applications", dict({{"a", "spfirewall_allow_all"},
                                                    {"b", "spfirewall_block_all"},
                                                    {"c", "spfirewall_perhaps"},
                                                    {"d", list({})}})}}),
                                  dict({{"spfirewall_globalstate", "spfirewall_globalstate_limit_connections"},
                  {"spfirewall_services", "none"}})}
           )
  });
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
  const Description machine = described({
      type("SPPowerDataType",
           {dict({{"_name", "sppower_information"},
                  {"AC Power", dict({{"System Sleep Timer", "<integer>0</integer>"},
                                     {"Wake On LAN", "<true/>"},
                                     {"LowPowerMode", "<integer>1</integer>"},
                                     {"Display Sleep Timer", list({})}})}}),
                               dict({{"_name", "spbattery_information"},
                  {"sppower_battery_health_info",
                   dict({{"sppower_battery_health_maximum_capacity", "99%"}})},
                  {"sppower_battery_charge_info",
                   dict({{"sppower_battery_state_of_charge", "<integer>80</integer>"},
                         {"sppower_battery_current_capacity", "<integer>1</integer>"},
                         {"sppower_battery_max_capacity", "<integer>2</integer>"}})}}),
                               dict({{"_name", "spbattery_information"},
                  {"sppower_battery_installed", "TRUE"},
                  {"sppower_battery_health_info",
                   dict({{"sppower_battery_health_maximum_capacity", "1000000000%"}})},
                  {"sppower_battery_charge_info",
                   dict({{"sppower_battery_current_capacity", "<integer>5127</integer>"},
                         {"sppower_battery_max_capacity", "<integer>6204</integer>"}})}}),
                               dict({{"_name", "spbattery_information"},
                  {"sppower_battery_charge_info",
                   dict({{"sppower_battery_is_charging", "TRUE"},
                         {"sppower_battery_state_of_charge", "<integer>-1</integer>"},
                         {"sppower_battery_current_capacity",
                          "<integer>9223372036854775807</integer>"},
                         {"sppower_battery_max_capacity", "<integer>0</integer>"}})}}),
                               dict({{"_name", "spbattery_information"},
                  {"sppower_battery_installed", "FALSE"},
                  {"sppower_battery_health_info", dict({{"sppower_battery_health", "Good"}})}}),
                               dict({{"_name", "spbattery_information"}})}
           )
  });
  EXPECT_EQ(rows(machine, "power"),
            "\nprofile=AC Power|system_sleep_min=0|wake_on_lan=true|low_power_mode=true");
  EXPECT_EQ(rows(machine, "battery"), R"(
maximum_capacity_pct=99|charge_pct=80
charge_pct=83
charging=true)");
}

TEST(ProfilerSoftware, DevicesOfEachKind) {
  const auto named = [](const char* name, const std::string& device) {
    return list({
        dict({{name, device}}
        )
    });
  };
  const Description machine = described({
      type("SPBluetoothDataType",
           {dict({{"controller_properties", dict({{"controller_chipset", "C1"}})},
                  {"device_connected", named("Pods", dict({{"device_address", "aa:bb:cc:00:11:22"},
                                                           {"device_serialNumber", "S1"}}))},
                  {"device_not_connected", named("Mouse", dict({}))}}),
                                   dict({{"device_title", named("Keys", dict({{"device_addr", "aa-bb-cc-00-11-22"},
                                                       {"device_isconnected", "attrib_No"}}))}}),
                                   dict({{"device_title", list({"text"})}, {"device_connected", "text"}})}
           ),
      type("SPAudioDataType",
           {dict({{"_name", "hda_compatible_hardware"},
                  {"_items", list({dict({{"_name", "jack"}})})}}),
                                   dict({{"_name", "coreaudio_device"},
                  {"_items",
                   list({dict({{"_name", "Mic"},
                               {"coreaudio_device_transport", "coreaudio_device_type_usb"}}),
                         dict({{"_name", "All"},
                               {"coreaudio_device_transport",
                                "coreaudio_device_type_unknown"}})})}})}
           ),
      type("SPThunderboltDataType",
           {dict({{"_name", "bus"},
                  {"_items", list({dict({{"device_name_key", "Dock"},
                                         {"_items", list({dict({{"_name", "Disk"}})})}})})}})     }
           ),
      type("SPCardReaderDataType", {dict({{"_name", "spcardreader"},
                                          {"spcardreader_vendor-id", "0x05ac"},
                                          {"_items", list({dict({{"_name", "card"}})})}})                                                                     }
           ),
      type("SPAirPortDataType",
           {dict({{"spairport_airport_interfaces",
                   list({dict({{"_name", "en0"},
                               {"spairport_wireless_card_type",
                                "spairport_wireless_card_type_wifi (0x14E4, 0x4387)"}}),
                         dict({{"_name", "awdl0"}})})}})                                                                }
           )
  });
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
  const Description machine =
      described({type("SPPowerDataType", {}), type("SPCameraDataType", {})});
  for (const char* table : {"power", "battery", "devices"})
    EXPECT_EQ(rows(machine, table), "") << table;
  for (const char* table : {"adapters", "printers", "software", "firewall"}) {
    EXPECT_EQ(rows(machine, table), "not recorded") << table;
  }
}

}  // namespace
