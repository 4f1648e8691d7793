#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "base/formatString.h"
#include "machine/profiler/tables.h"

namespace machine {
namespace {

// A dictionary of a data type with the items that are given as XML.
std::string typed(const std::string& dataType, const std::string& items) {
  return "<dict><key>_dataType</key><string>" + dataType + "</string><key>_items</key><array>" +
         items + "</array></dict>";
}

// "key=text; key=text" as an item.
std::string item(const std::string& pairs) {
  std::string xml = "<dict>";
  for (std::size_t at = 0; at < pairs.size();) {
    const std::size_t equals = pairs.find('=', at);
    const std::size_t end = std::min(pairs.find("; ", equals), pairs.size());
    const std::string value = pairs.substr(equals + 1, end - equals - 1);
    xml += "<key>" + pairs.substr(at, equals - at) + "</key>";
    xml += value.starts_with('<') ? value : "<string>" + value + "</string>";
    at = end + 2;
  }
  return xml + "</dict>";
}

std::string textOfValue(const Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* real = std::get_if<double>(&value)) return formatString("%g", *real);
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "yes" : "no";
  return std::string(textOf(value));
}

// What is known in the rows of a table, "column=value; column=value", one row a line.
std::string table(const std::string& name, const std::string& dataTypes) {
  const auto host = platform::makeHost();
  const std::string document = "<plist><array>" + dataTypes + "</array></plist>";
  const auto profile = Profile::open(document, *host);
  if (!profile) return profile.error().message;
  Description machine(Source::Debug);
  for (const auto read :
       {profiler::readProfiledMachine, profiler::readProfiledMemory, profiler::readProfiledStorage,
        profiler::readProfiledUsb, profiler::readProfiledDisplays}) {
    read(*profile, machine);
  }
  EXPECT_EQ(profile->unreadable(), 0U) << document;
  const TableData& data = machine[tableAt(name)];
  if (!data.recorded) return "not recorded";
  std::string rows;
  for (const Row& row : data.rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (!isKnown(row[i])) continue;
      line += line.empty() ? "" : "; ";
      line += std::string(findTable(name)->columns[i].name) + "=" + textOfValue(row[i]);
    }
    rows += line + "\n";
  }
  return rows;
}

struct Case {
  std::string items;
  std::string rows;
};

TEST(ProfilerHardware, TellsProcessors) {
  const Case cases[] = {
      {"chip_type=Apple M4 Pro; number_processors=proc 12:8:4",
       "virtual=no; architecture=arm64; chip=Apple M4 Pro; cores=12; performance_cores=8; "
       "efficiency_cores=4\n"                                                                    },
      {"chip_type=Apple M5; number_processors=proc 10:4:6:0",
       "virtual=no; architecture=arm64; chip=Apple M5; cores=10; super_cores=4; "
       "performance_cores=6; "
       "efficiency_cores=0\n"                                                                    },
      {"chip_type=Apple M4 Max (Virtual); machine_model=VirtualMac2,1; number_processors=2",
       "model_id=VirtualMac2,1; virtual=yes; architecture=arm64; chip=Apple M4 Max (Virtual); "
       "cores=2\n"                                                                               },
      {"cpu_type=Quad-Core  Intel Core i7; current_processor_speed=2,4 GHz; "
       "packages=<integer>1</integer>; "
       "l2_cache_core=256 KB; l3_cache=8 MB",                                         "architecture=x86_64; chip=Quad-Core Intel Core i7; packages=1; clock_mhz=2400; "
       "l2_cache_kb=256; l3_cache_kb=8192\n" },
      {"cpu_type=Unknown; number_processors=proc 8:x",                                       "\n"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(table("machine", typed("SPHardwareDataType", item(c.items))), c.rows);
  }
}

TEST(ProfilerHardware, TellsTheSystem) {
  const Case cases[] = {
      {"os_version=macOS 14.5 (23F79); user_name=Mara (M.) Kestrel (mara); "
       "system_integrity=integrity_enabled",                                   "user=mara; user_full_name=Mara (M.) Kestrel; os_name=macOS; os_version=14.5; "
       "os_build=23F79; "
       "os_marketing_name=Sonoma; integrity_protection=yes\n"},
      {"os_version=Mac OS X Server 10.6.8 (10K549); uptime=up 1:2:3:4",
       "os_name=Mac OS X Server; os_version=10.6.8; os_build=10K549; os_marketing_name=Snow "
       "Leopard; "
       "uptime_seconds=93784\n"                                                                                 },
      {"os_version=macOS 99.1 (99A1); uptime=up 1:2:3; local_host_name=Mara’s Mac",
       "name=Mara’s Mac; os_name=macOS; os_version=99.1; os_build=99A1\n"                                     },
      {"os_version=macOS 13.4.1 (c) (22F770820d); local_host_name=desk-2.local",
       "name=desk-2.local; local_hostname=desk-2; os_name=macOS; os_version=13.4.1 (c); "
       "os_build=22F770820d; os_marketing_name=Ventura\n"                                                       },
  };
  for (const Case& c : cases) {
    EXPECT_EQ(table("machine", typed("SPSoftwareDataType", item(c.items))), c.rows);
  }
}

TEST(ProfilerHardware, TellsMemory) {
  const Case cases[] = {
      {item("SPMemoryDataType=24 GB; dimm_type=LPDDR5; dimm_manufacturer=Unknown"),
       "used=yes; soldered=yes; size_mb=24576; type=LPDDR5\n"                         },
      {item("_name=BANK 0; is_memory_upgradeable=No; _items=<array>" +
            item("_name=DIMM0; dimm_status=ok; dimm_size=8 GB; dimm_part_number=0x4D34373141") +
            item("_name=DIMM1; dimm_status=empty; dimm_size=empty; dimm_type=empty") + "</array>"),
       "slot=DIMM0; used=yes; soldered=yes; size_mb=8192; part_number=M471A; status=ok\n"
       "slot=DIMM1; used=no; soldered=yes; status=empty\n"                            },
      {item("_name=DIMM 7; dimm_status=parity_error; dimm_size=1 GB; dimm_part_number=0x5F01"),
       "slot=DIMM 7; used=no; size_mb=1024; part_number=0x5F01; status=parity_error\n"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(table("memory", typed("SPMemoryDataType", c.items)), c.rows);
  }
}

std::string controller(const std::string& devices) {
  return "<dict><key>_items</key><array>" + devices + "</array></dict>";
}

// A volume of APFS on a drive that the profiler describes within it.
std::string volume(const std::string& bsdName, const std::string& drive) {
  return item("_name=" + bsdName + "; bsd_name=" + bsdName +
              "; file_system=Case-sensitive APFS; physical_drive=" + item(drive));
}

TEST(ProfilerHardware, FindsEachDiskOnce) {
  const std::string sata = typed(
      "SPSerialATADataType",
      controller(item("bsd_name=disk0; device_model=SSD    ; size_in_bytes=500; spsata_medium_type="
                      "Solid State") +
                 item("device_model=DVD-R   ; smart_status=Not Supported") +
                 item("_name=Port Multiplier; smart_status=Not Supported")));
  const std::string usb =
      typed("SPUSBDataType",
            controller(item("_name=Stick; serial_num=S1; Media=<array>" +
                            item("_name=Flash; bsd_name=disk4; removable_media=yes; size=1,5 GB; "
                                 "volumes=<array>" +
                                 item("_name=DATA; bsd_name=disk4s1; free_space=Zero KB") +
                                 item("_name=EFI; bsd_name=disk4s2") + "</array>") +
                            "</array>")));
  const std::string data = item("_name=DATA; bsd_name=disk4s1; writable=no; physical_drive=" +
                                item("device_name=Flash; is_internal_disk=no"));
  const std::string storage = typed(
      "SPStorageDataType",
      data + volume("disk1s1", "device_name=SSD; smart_status=Failing; is_internal_disk=yes") +
          volume("disk2s1", "device_name=VIRTUAL; protocol=SATA; medium_type=rotational") +
          volume("disk2s5s1", "device_name=VIRTUAL; protocol=SATA") +
          volume("disk7s1", "protocol=USB") + volume("disk7s2", "protocol=USB") +
          volume("disk9s1", "device_name=Disk Image; protocol=Disk Image"));
  EXPECT_EQ(table("disks", sata + usb + storage),
            "model=SSD; bsd_name=disk0; size_bytes=500; interface=SATA; kind=ssd; internal=yes; "
            "health=failing\n"
            "model=DVD-R; interface=SATA; kind=optical\n"
            "serial=S1; model=Stick; bsd_name=disk4; size_bytes=1500000000; interface=USB; "
            "kind=removable; internal=no\n"
            "model=VIRTUAL; interface=SATA; kind=rotational\n"
            "interface=USB\n");
  EXPECT_EQ(table("volumes", usb + typed("SPStorageDataType", data)),
            "name=DATA; bsd_name=disk4s1; free_bytes=0; writable=no; internal=no; "
            "disk_model=Stick\n");
  EXPECT_EQ(table("volumes", typed("SPStorageDataType", volume("disk3s1s1", "device_name=A"))),
            "name=disk3s1s1; bsd_name=disk3s1s1; file_system=Case-sensitive APFS; container=disk3; "
            "disk_model=A\n");
  EXPECT_EQ(table("volumes", sata), "not recorded");
}

TEST(ProfilerHardware, TellsUsbDevicesOfEverySystem) {
  const std::string old = controller(item(
      "_name=hub_device; a_product_id=0x2513; b_vendor_id=0x424  (SMSC); g_location_id=0xfa100000 "
      "/ 2; _items=<array>" +
      item("_name=Mouse; _vendor_id=apple_vendor_id; c_bcd_device= 1.10; e_device_speed=low_speed; "
           "j_bus_power_used=100") +
      "</array>"));
  const std::string host =
      "<dict><key>_name</key><string>USB 3.1 Bus</string><key>_items</key><array>" +
      item(
          "_name=T7; USBDeviceKeyLinkSpeed=10 Gb/s; USBDeviceKeyPowerAllocation="
          "4.48 W (896 mA); USBDeviceKeyProductVersion=0x0100; "
          "USBDeviceKeySerialNumber=Not Provided; USBKeyLocationID=0x01200000") +
      item(
          "_name=Hub; USBDeviceKeyVendorID=0x0424; USBDeviceKeyProductID=0x2513; "
          "USBKeyLocationID=0xfa100000") +
      "</array></dict>";
  EXPECT_EQ(table("usb", typed("SPUSBHostDataType", host) + typed("SPUSBDataType", old)),
            "name=Hub; location=0xfa100000; vendor_id=0424; product_id=2513; hub=yes\n"
            "name=Mouse; vendor_id=05ac; version=1.10; speed_mbit_s=1.5; power_ma=100; hub=no; "
            "parent=Hub\n"
            "name=T7; location=0x01200000; version=1.00; speed_mbit_s=10000; power_ma=896; hub=no; "
            "parent=USB 3.1 Bus\n");
}

TEST(ProfilerHardware, TellsDisplays) {
  const auto adapter = [](const std::string& displays) {
    return typed("SPDisplaysDataType",
                 item("sppci_model=Apple M1; spdisplays_ndrvs=<array>" + displays + "</array>"));
  };
  EXPECT_EQ(table("displays",
                  adapter(item("_name=Panel; _spdisplays_display-serial-number=fd626d62; "
                               "_spdisplays_display-vendor-id=610; spdisplays_main=spdisplays_yes; "
                               "spdisplays_connection_type=spdisplays_internal; "
                               "_spdisplays_pixels=3024 x 1964; "
                               "_spdisplays_resolution=1512 x 982 @ 120.00Hz") +
                          item("spdisplays_status=spdisplays_not_connected") +
                          item("_name=Pad; _spdisplays_display-vendor-id=6161706c; "
                               "spdisplays_virtualdevice=spdisplays_yes; "
                               "spdisplays_connection_type=spdisplays_airplay"))),
            "name=Panel; manufacturer=APP; main=yes; built_in=yes; virtual=no; width_px=3024; "
            "height_px=1964; refresh_hz=120; connection=Built-in; adapter=Apple M1\n"
            "name=Pad; main=no; built_in=no; virtual=yes; connection=AirPlay; adapter=Apple M1\n");
}

// Values of any other kind than a key's own are not known, and nothing else.
TEST(ProfilerHardware, PassesOverValuesOfTheWrongKind) {
  const std::string odd = item(
      "os_version=<dict/>; number_processors=<true/>; physical_memory=<integer>8</integer>; "
      "SPMemoryDataType=<array/>; size_in_bytes=<real>1e300</real>; "
      "device_model=<date>2001-01-01T00:00:"
      "00Z</date>; volumes=<string>disk</string>; spdisplays_ndrvs=<array><true/></array>; "
      "Media=<array><string>a</string></array>; com.apple.corestorage.pv=<array><true/></array>; "
      "physical_drive=<true/>; _items=<array><integer>1</integer><dict/></array>");
  std::string all;
  for (const char* type :
       {"SPHardwareDataType", "SPSoftwareDataType", "SPMemoryDataType", "SPSerialATADataType",
        "SPStorageDataType", "SPUSBDataType", "SPDisplaysDataType"}) {
    all += typed(type, odd);
  }
  EXPECT_EQ(table("machine", all), "\n");
  EXPECT_EQ(table("memory", all), "used=yes; soldered=yes\n");
}

}  // namespace
}  // namespace machine
