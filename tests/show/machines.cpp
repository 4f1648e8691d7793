#include "show/machines.h"

#include <cstdint>
#include <string>

#include "support/rows.h"

using machine::Description;

Description notebook() {
  Description mac = described(machine::Source::Debug, R"(
      machine: serial=C02XK0AAJGH5 | name=Mara’s MacBook Pro | model_id=MacBookPro18,3
        | model_name=MacBook Pro | os_name=macOS | os_version=14.5 | os_build=23F79
        | os_marketing_name=Sonoma | architecture=arm64 | chip=Apple M1 Pro | cores=10
        | performance_cores=8 | efficiency_cores=2 | memory_mb=16384 | uptime_seconds=1050000
        | virtual=false | scanned_at=2026-11-21T16:22:05+01:00 | agent_version=17.05.24
      memory: used=true | soldered=true | size_mb=16384 | type=LPDDR5
      disks: model=APPLE SSD AP0512R | size_bytes=500277792768 | kind=ssd | internal=true
        | health=verified
      disks: model=Kestrel Backup | size_bytes=4000787030016 | kind=rotational | internal=false
        | health=failing
      volumes: mount_point=/System/Volumes/Macintosh HD - Data | name=Macintosh HD - Data
        | file_system=APFS | size_bytes=494384795648 | free_bytes=133200000000 | container=disk3
        | encrypted=true
      volumes: mount_point=/ | name=Macintosh HD | file_system=APFS | size_bytes=494384795648
        | free_bytes=133200000000 | container=disk3 | encrypted=true
      volumes: mount_point=/System/Volumes/VM | name=VM | file_system=APFS
        | size_bytes=494384795648 | free_bytes=133200000000 | container=disk3 | encrypted=true
      volumes: name=Cryptex | size_bytes=9000 | disk_model=Disk Image
      volumes: mount_point=/Volumes/日本語のバックアップ | name=日本語のバックアップ | file_system=Journaled HFS+
        | size_bytes=4000000000000 | free_bytes=120000000000
      adapters: interface=en5 | name=USB LAN
      adapters: interface=en0 | name=Wi-Fi | ip_addresses=192.168.1.20
        | mac_address=F8-4D-89-00-11-22
      displays: name=Color LCD | built_in=true | diagonal_in=14.2 | width_px=3024 | height_px=1964
      displays: name=LG HDR 4K | width_px=3840 | height_px=2160
      video: model=Apple M1 Pro
      battery: condition=Good | cycles=312 | maximum_capacity_pct=87 | charge_pct=54
      usb: name=Hub | hub=true
      usb: name=Keyboard | serial==1+1 | speed_mbit_s=1.5
      printers)");
  for (int i = 0; i < 318; ++i) {
    addRows(mac, "software: path=/Applications/Product " + std::to_string(i) +
                     ".app | origin=" + (i < 12 ? "unknown" : "apple"));
  }
  return mac;
}

Description monster() {
  const std::string wide(300, 'W');
  const std::string kanji =
      "機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械機械";
  const std::string most = std::to_string(INT64_MAX);
  const std::string least = std::to_string(INT64_MIN);
  Description mac(machine::Source::Snapshot);
  addRows(mac, "machine: model_name=" + wide + " | serial=" + wide + " | os_name=" + wide +
                   " | chip=" + kanji + " | packages=" + most + " | cores=" + most +
                   " | clock_mhz=" + most + " | memory_mb=" + most + " | uptime_seconds=" + most +
                   " | scanned_at=" + wide);
  lastValue(mac, "machine", "name") = "a\x1B[2J\n\xC2\x9B" + kanji;
  const std::string rows =
      "memory: slot=" + wide + " | used=true | type=" + wide + "\ndisks: model=" + kanji +
      " | size_bytes=" + most + " | health=failing\nvolumes: name=" + kanji +
      " | size_bytes=" + most + " | file_system=" + wide + "\nadapters: name=" + kanji +
      " | ip_addresses=" + wide + "\ndisplays: name=" + wide +
      " | diagonal_in=1e300 | width_px=" + least + " | height_px=" + most +
      "\nvideo: model=" + kanji + " | memory_mb=" + least + "\nbattery: cycles=" + least +
      " | charge_pct=" + most + "\nusb: name=" + wide + "\nprinters: name=" + wide +
      "\nsoftware: name=" + wide;
  for (std::int64_t i = 0; i < 30; ++i) {
    addRows(mac, rows);
    lastValue(mac, "volumes", "free_bytes") = i;
  }
  return mac;
}
