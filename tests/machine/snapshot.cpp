#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "machine/snapshot/tables.h"

namespace machine {
namespace {

std::string textFor(const Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* number = std::get_if<double>(&value)) return std::to_string(*number);
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "yes" : "no";
  return std::string(textOf(value));
}

// The rows of a table with the columns that are known: "name=vm cores=4;name=pc;".
std::string rowsOf(const Description& machine, const char* table) {
  const std::size_t place = tableAt(table);
  if (!machine[place].recorded)
    return machine[place].rows.empty() ? "not recorded" : "rows, but not recorded";
  std::string all;
  for (const Row& row : machine[place].rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (!isKnown(row[i])) continue;
      if (!line.empty()) line += ' ';
      line += std::string(kTables[place].columns[i].name) + '=' + textFor(row[i]);
    }
    all += line + ';';
  }
  return all;
}

std::string withLineEnds(std::string text) {
  std::ranges::replace(text, ';', '\n');
  return text;
}

// `lines` of the document end in ";" here.
std::string read(void (*reader)(const huxread::Document&, Description&), const std::string& lines,
                 const char* table) {
  auto document = huxread::Document::parse("\xEF\xBB\xBF?keva\n" + withLineEnds(lines));
  if (!document) return document.error().message;
  Description machine(Source::Snapshot);
  reader(*document, machine);
  return rowsOf(machine, table);
}

void expectSnapshot(const char* what, const char* table, const std::string& lines,
                    const char* rows) {
  EXPECT_EQ(read(readSnapshot, lines, table), rows) << what;
}

void expectAsset(const char* what, const std::string& lines, const char* rows) {
  EXPECT_EQ(read(readAsset, lines, "machine"), rows) << what;
}

TEST(Snapshot, LeavesOutWhatItsRulesSayWrongly) {
  expectSnapshot(
      "Apple silicon", "machine",
      "+Snapshot=;+System=;*Computer-system=;model=MacBookPro18,3;-;+Processors=;*Processor:1=CPU "
      "#1;core-count=0;current-clock-speed=0;-;+Video=;+Adapters=;*video-adapter:1=Apple M1 "
      "Pro;model=Apple M1 Pro;-;-;+OS=;*os:1=OS X v10.5 (Leopard);name=Mac OS X v10.5 "
      "(Leopard);version=14.5 (23F79);uptime=00000003042709.000000:000;architecture=32-bit;-;-;",
      "model_id=MacBookPro18,3 virtual=no os_name=macOS os_version=14.5 os_build=23F79 "
      "os_marketing_name=Sonoma architecture=arm64 chip=Apple M1 Pro uptime_seconds=275229;");
  expectSnapshot("a virtual Mac", "machine",
                 "+Snapshot=;+System=;*Computer-system=;model=VirtualMac2,1;-;+Processors=;*"
                 "Processor:1=CPU #1;core-count=4;current-clock-speed=0;-;-;",
                 "model_id=VirtualMac2,1 virtual=yes architecture=arm64 cores=4;");
  expectSnapshot(
      "an old server", "machine",
      "+Snapshot=;+Processors=;*Processor:1=Intel "
      "Xeon;core-count=8;l3-cache-size=4096;current-clock-speed=2000;*Processor:2=Intel "
      "Xeon;-;+OS=;*os:1=;version=Server 10.6.8 "
      "(10K549);uptime=00000000000000.000000:000;architecture=64-bit;-;-;",
      "os_name=Mac OS X Server os_version=10.6.8 os_build=10K549 os_marketing_name=Snow Leopard "
      "architecture=x86_64 chip=Intel Xeon packages=2 cores=8 l3_cache_kb=8192;");
  expectSnapshot("a processor that was not reported, and a clock in MHz", "machine",
                 "+Snapshot=;+Processors=;*Processor:1=CPU "
                 "#1;core-count=1;current-clock-speed=0;-;+OS=;*os:1=;version=27.0 (a) (1A1);-;-;",
                 "os_name=macOS os_version=27.0 (a) os_build=1A1;");
  expectSnapshot("a slow clock", "machine",
                 "+Snapshot=;+Processors=;*Processor:1=PowerPC "
                 "G3;core-count=1;current-clock-speed=800000;-;-;",
                 "architecture=ppc chip=PowerPC G3 packages=1 cores=1 clock_mhz=800;");
  expectSnapshot("soldered memory", "memory", "+Snapshot=;+Memory=;*Memory-slot:1=;used=0;-;-;",
                 "not recorded");
  expectSnapshot("an empty slot", "memory",
                 "+Snapshot=;+Memory=;*Memory-slot:1=;used=1;capacity=0;speed=1067;*Memory-slot:2=;"
                 "used=0;-;-;",
                 "used=yes speed_mhz=1067 status=ok;used=no;");
  expectSnapshot("partitions that hold containers", "volumes",
                 "+Snapshot=;+Storage=;+Logical-disks=;*partition:1=disk0s2;size=931.32;~base-"
                 "value=999995129856;-;-;-;",
                 "not recorded");
  expectSnapshot("volumes of several disks, one with a size from a text", "volumes",
                 "+Snapshot=;+Storage=;+Physical-disks=;*HDD:1=;model=A;partitions=2;*CD:1=;model="
                 "B;*Removable:1=Stick;partitions=9999999999999999999;*Removable:2=Reader;"
                 "partitions=1;-;+Logical-disks=;*partition:1=EFI;~file-sys=MS-DOS;size=1;*"
                 "partition:2=HD;~kind=encrypted;~file-sys=Journaled "
                 "HFS+;size=1.00;~base-value=1073741824;mount-point=/"
                 ";*partition:3=PICTURES;size=7.34;~base-value=7881264988;free=0.5;~base-value="
                 "512000;file-sys=MS-DOS;bsd-name=disk2s1;*partition:4=more;free=1;-;-;-;",
                 "mount_point=/ name=HD file_system=Journaled HFS+ size_bytes=1073741824 "
                 "encrypted=yes disk_model=A;name=PICTURES bsd_name=disk2s1 file_system=MS-DOS "
                 "free_bytes=512000 disk_model=Reader;name=more;");
  expectSnapshot(
      "a drive that may be a disk", "disks",
      "+Snapshot=;+Storage=;+Physical-disks=;*CD:1=;model=VBOX HARDDISK   "
      ";*HDD:1=;size=0;~base-value=0;serial=S1;*Removable:1=Stick;model=Generic Flash;-;-;-;",
      "model=VBOX HARDDISK;serial=S1;model=Stick kind=removable;");
  expectSnapshot(
      "the serial number of all panels", "displays",
      "+Snapshot=;+Video=;+Monitors=;*Monitor:1=Color "
      "LCD;serial=4251086178;built-in=1;resolution=1512 x 982 @ 120.00Hz;pixels=3024 x 1964;-;-;-;",
      "name=Color LCD built_in=yes virtual=no width_px=3024 height_px=1964 refresh_hz=120.000000;");
  expectSnapshot("applications", "software",
                 "+Snapshot=;+Software=;*Soft:A "
                 "1=A;path=;64bit-app=1;~type=unknown;inst-date=20240501;*Soft:B "
                 "1=B;path=/"
                 "B.app;64bit-app=1;runtime-environment=arch_x86;app-store=1;*Soft:C=C;runtime-"
                 "environment=arch_x86;inst-date=2024;-;-;",
                 "name=A modified_on=2024-05-01;path=/B.app name=B architecture=x86_64 "
                 "is_64bit=yes origin=app_store;name=C architecture=i386 is_64bit=no;");
  expectSnapshot(
      "an allowed application", "firewall",
      "+Snapshot=;+Security=;+Firewall=;status=1;stealth-mode=2;+Services=;service:1=;*service:1="
      "SSH;status=1;-;+Apps=;*app:1=Chat;status=1;*app:2=Sync;status=0;-;-;-;-;",
      "kind=global name=mode setting=limit;kind=global name=stealth_mode;kind=service name=SSH "
      "setting=allow;kind=application name=Chat;kind=application name=Sync setting=block;");
  expectSnapshot("no USB section", "usb", "*Snapshot=;", "not recorded");
  expectSnapshot("no USB devices", "usb", "+Snapshot=;+Peripherals=;*USB=;-;-;", "");
  expectSnapshot(
      "speeds of USB", "usb",
      "+Snapshot=;+Peripherals=;+USB=;*Device:1=Disk;device-speed=5;~units=Gbit-s;*Device:2=Mouse;"
      "device-speed=1.5;bus-power-used=many;vendor-id=apple_vendor_id;-;-;-;",
      "name=Disk speed_mbit_s=5000.000000 hub=no;name=Mouse vendor_id=05ac speed_mbit_s=1.500000 "
      "hub=no;");
  expectSnapshot("addresses of both kinds", "adapters",
                 "+Snapshot=;+Network=;+Adapters=;*net-adapter:1=Wi-Fi;ip-address=192.0.2.1, "
                 "fe80::1, 192.0.2.2;-;-;-;",
                 "name=Wi-Fi ip_addresses=192.0.2.1, 192.0.2.2 ipv6_addresses=fe80::1;");
  expectSnapshot("accounts with several names", "users",
                 "+Snapshot=;+User-accounts=;*usr-acc:mara=mara "
                 "mara@example.com;hdir=/users/Mara;id=501;*usr-acc:x=x;hdir=/home/x;id=x;-;-;",
                 "name=mara uid=501 home=/Users/Mara;name=x;");
  expectSnapshot("profiles", "power",
                 "+Snapshot=;+System=;+PowerManagement=;*Profile:1=Battery_Power;system-sleep-"
                 "timer=0;wake-on-lan=maybe;-;-;-;",
                 "profile=Battery Power system_sleep_min=0;");
  expectSnapshot("control bytes", "environment",
                 "+Snapshot=;+Environment=;*env-var:A=A;value= \x1B[2J\xFF ;-;-;",
                 "name=A value= \xEF\xBF\xBD[2J\xEF\xBF\xBD ;");
}

TEST(Snapshot, SaysWhoTheMachineIs) {
  expectAsset("a scan",
              "+AssetInfo=;hostname=MARA;ip-address=192.0.2.17;static-ip=1;int-name=Mara's "
              "Mac;uuid=abc-1;last-scan=20171231235959.000000+180;+control=;domain=LINDGROVE;-;-;",
              "uuid=ABC-1 name=Mara's Mac netbios_name=MARA workgroup=LINDGROVE "
              "ip_address=192.0.2.17 static_ip=yes scanned_at=2017-12-31T23:59:59+03:00;");
  expectAsset("a debug scan without a connection",
              "*AssetInfo=;ip-address=0.0.0.0;static-ip=0;last-scan=;uuid=;scan-attempt="
              "20260101000000.000000-570;",
              "scanned_at=2026-01-01T00:00:00-09:30;");
  expectAsset(
      "wrong times",
      "*AssetInfo=;last-scan=20260101000000.000000+99999;scan-attempt=yesterday, at noon sharp!;",
      ";");
  expectAsset("nothing", "", ";");
}

}  // namespace
}  // namespace machine
