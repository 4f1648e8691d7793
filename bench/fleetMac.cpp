#include "fleetMac.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "base/formatString.h"

namespace {

struct Model {
  const char* id;
  const char* name;
  const char* chip;
  int cores;
  int slots;          // of memory; 0 when it is soldered
  int memory[3];      // GB, to choose from
  std::size_t first;  // of kSystems, the oldest it can have and the newest
  std::size_t last;
};

struct System {
  const char* version;
  const char* build;
  const char* kernel;
  const char* browser;  // version of the browser that comes with it
};

constexpr System kSystems[] = {
    {"10.12.6", "16G29",   "16.7.0", "10.1.2"},
    {"10.13.6", "17G65",   "17.7.0", "11.1.2"},
    {"10.15.7", "19H2",    "19.6.0", "13.1.3"},
    {"11.7.10", "20G1427", "20.6.0", "16.6.1"},
    {"12.7.6",  "21H1320", "21.6.0", "17.6"  },
    {"13.7.8",  "22H730",  "22.6.0", "18.6"  },
    {"14.5",    "23F79",   "23.5.0", "17.5"  },
    {"14.8.2",  "23J126",  "23.6.0", "26.1"  },
    {"15.7.2",  "24G325",  "24.6.0", "26.1"  },
    {"26.1",    "25B78",   "25.1.0", "26.1"  },
};

constexpr Model kModels[] = {
    {"MacBookPro9,1",  "MacBook Pro", "Intel Core i7",           4,  2, {4, 8, 16},   0, 2},
    {"MacBookAir7,2",  "MacBook Air", "Intel Core i5",           2,  2, {4, 8, 8},    0, 4},
    {"iMac18,3",       "iMac",        "Quad-Core Intel Core i5", 4,  4, {8, 16, 32},  1, 5},
    {"Macmini8,1",     "Mac mini",    "6-Core Intel Core i7",    6,  2, {8, 16, 32},  2, 8},
    {"MacBookPro16,1", "MacBook Pro", "8-Core Intel Core i9",    8,  2, {16, 32, 64}, 3, 9},
    {"MacBookAir10,1", "MacBook Air", "Apple M1",                8,  0, {8, 8, 16},   4, 9},
    {"MacBookPro18,3", "MacBook Pro", "Apple M1 Pro",            10, 0, {16, 16, 32}, 5, 9},
    {"Mac14,2",        "MacBook Air", "Apple M2",                8,  0, {8, 16, 24},  6, 9},
    {"Mac14,3",        "Mac mini",    "Apple M2",                8,  0, {8, 16, 24},  6, 9},
    {"Mac15,12",       "MacBook Air", "Apple M3",                8,  0, {8, 16, 24},  7, 9},
    {"Mac16,1",        "MacBook Pro", "Apple M4",                10, 0, {16, 24, 32}, 8, 9},
};

constexpr int kApplications = 300;  // of each machine
constexpr int kSystemApplications = 60;
constexpr int kPool = 900;
constexpr int kReleases = 24;
constexpr int kProcesses = 150;

constexpr const char* kFirst[] = {"Amber",  "Birch",  "Cinder",  "Dune",    "Ember",   "Fjord",
                                  "Grove",  "Harbor", "Inlet",   "Juniper", "Kestrel", "Larch",
                                  "Meadow", "Nimbus", "Orchard", "Pebble",  "Quarry",  "Rowan"};
constexpr const char* kSecond[] = {"Notes", "Board",   "Sync",   "Paint",  "Ledger",   "Chat",
                                   "Vault", "Planner", "Player", "Reader", "Terminal", "Backup",
                                   "Meter", "Studio",  "Mail",   "Draw",   "Scope"};
constexpr const char* kThird[] = {"", " Pro", " Helper"};
constexpr const char* kPeople[] = {"ada",   "bruno", "carla", "dario", "elif", "femke", "goran",
                                   "hanna", "imran", "jonas", "kaja",  "lars", "mina",  "noor"};

// Applications of the pool are told apart by their number alone: what it is called, who makes it.
std::string applicationName(int number) {
  if (number == 0) return "Safari";
  const auto at = static_cast<std::size_t>(number);
  return std::string(kFirst[at % std::size(kFirst)]) + " " +
         kSecond[at / std::size(kFirst) % std::size(kSecond)] +
         kThird[at / (std::size(kFirst) * std::size(kSecond)) % std::size(kThird)];
}

std::string releaseName(int number, int release) {
  const int major = 1 + number * 7 % 17 + release / 6;
  if (number % 5 == 0) return formatString("%d.%d", major, release % 6);
  if (number % 11 == 0) return formatString("%d.%d", 2019 + release / 4, release % 4 + 1);
  return formatString("%d.%d.%d", major, release % 6, number * release % 10);
}

// --- property lists, laid out as the profiler prints them

std::string text(std::string_view key, std::string_view value) {
  return "\t\t\t\t<key>" + std::string(key) + "</key>\n\t\t\t\t<string>" + std::string(value) +
         "</string>\n";
}

std::string integer(std::string_view key, std::int64_t value) {
  return "\t\t\t\t<key>" + std::string(key) + "</key>\n\t\t\t\t<integer>" + std::to_string(value) +
         "</integer>\n";
}

std::string dictionary(const std::string& content) {
  return "\t\t\t<dict>\n" + content + "\t\t\t</dict>\n";
}

std::string dictionary(std::string_view key, const std::string& content) {
  return "\t\t\t\t<key>" + std::string(key) + "</key>\n" + dictionary(content);
}

std::string array(std::string_view key, const std::string& content) {
  return "\t\t\t\t<key>" + std::string(key) + "</key>\n\t\t\t<array>\n" + content +
         "\t\t\t</array>\n";
}

std::string texts(std::string_view key, const std::vector<std::string>& values) {
  std::string content;
  for (const std::string& value : values) content += "\t\t\t\t<string>" + value + "</string>\n";
  return array(key, content);
}

std::string dataType(std::string_view name, const std::string& items) {
  return "\t<dict>\n" + text("_dataType", name) + array("_items", items) +
         text("_parentDataType", "SPRootDataType") + "\t</dict>\n";
}

// A whole document of the profiler, which must begin and end as the profiler's do.
std::string document(const std::string& dataTypes) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST "
         "1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist "
         "version=\"1.0\">\n<array>\n" +
         dataTypes + "</array>\n</plist>\n";
}

constexpr std::int64_t kGigabyte = 1'000'000'000;

std::string gigabytes(std::int64_t bytes) {
  return formatString("%.2f GB", static_cast<double>(bytes) / 1e9);
}

}  // namespace

FleetMac::FleetMac(std::uint64_t seed, int number)
    : random_(seed * 1'000'003 + static_cast<std::uint64_t>(number)), number_(number) {
  // Newer models are more frequent: the better of two draws.
  model_ = static_cast<std::size_t>(std::max(upTo(static_cast<int>(std::size(kModels))),
                                             upTo(static_cast<int>(std::size(kModels)))));
  const Model& model = kModels[model_];
  const int systems = static_cast<int>(model.last - model.first) + 1;
  system_ = model.first + static_cast<std::size_t>(std::max(upTo(systems), upTo(systems)));
  memory_ = model.memory[upTo(3)];
  disk_ = (std::int64_t{1} << upTo(4)) * 250 * kGigabyte;
  free_ = disk_ / 100 * (once(25) ? 3 : 8 + upTo(70));
  cycles_ = upTo(900);
  failing_ = once(30);
  firewall_ = !once(4);
  encrypted_ = !once(6);
  if (once(20)) weeksUnseen_ = 5 + upTo(40);
  // Two of five hundred have one serial number, as after an exchange of the logic board.
  serial_ = formatString("C0%06dQX%02d", number % 500 == 7 ? number - 1 : number,
                         number % 500 == 7 ? (number - 1) % 97 : number % 97);
  uuid_ = formatString("%08X-%04X-4%03X-A%03X-%012X", static_cast<unsigned>(upTo(1 << 30)),
                       static_cast<unsigned>(upTo(1 << 16)), static_cast<unsigned>(upTo(1 << 12)),
                       static_cast<unsigned>(upTo(1 << 12)), static_cast<unsigned>(number));
  // And some do not say who they are, as after a repair without the last step.
  if (number % 500 >= 9 && number % 500 <= 11) serial_.clear();
  if (number % 500 == 9) uuid_.clear();
  user_ =
      std::string(kPeople[static_cast<std::size_t>(upTo(static_cast<int>(std::size(kPeople))))]) +
      std::to_string(number);
  name_ = user_ + "-mac";
  for (int i = 0; i < kSystemApplications; ++i) applications_.push_back({i, 0});
  while (applications_.size() < kApplications) {
    // Few are on most machines, most on few.
    const int pool = kPool - kSystemApplications;
    install(kSystemApplications + upTo(1 + upTo(pool)));
  }
}

int FleetMac::upTo(int limit) {
  return static_cast<int>(random_() % static_cast<std::uint64_t>(limit));
}

bool FleetMac::once(int many) {
  return upTo(many) == 0;
}

void FleetMac::install(int application) {
  if (std::ranges::find(applications_, application, &Application::number) != applications_.end())
    return;
  applications_.push_back({application, kReleases / 2 - std::min(upTo(12), upTo(12))});
}

void FleetMac::live() {
  const Model& model = kModels[model_];
  for (std::size_t i = kSystemApplications; i < applications_.size(); ++i) {
    if (once(30)) applications_[i].release = std::min(applications_[i].release + 1, kReleases);
  }
  if (once(2))
    applications_.erase(applications_.begin() + kSystemApplications +
                        upTo(static_cast<int>(applications_.size()) - kSystemApplications));
  if (once(2)) install(kSystemApplications + upTo(kPool - kSystemApplications));
  if (once(12) && system_ < model.last) ++system_;
  if (once(400) && model.slots > 0) memory_ = model.memory[2];
  if (once(500)) failing_ = true;
  free_ = std::max<std::int64_t>(free_ - disk_ / 2000 * upTo(20), disk_ / 100);
  cycles_ += upTo(4);
  uptime_ = 1 + upTo(30);
}

bool FleetMac::isSilicon() const {
  return kModels[model_].slots == 0;
}

bool FleetMac::debug() const {
  return isSilicon() && number_ % 4 != 0;
}

std::string FleetMac::address() const {
  return formatString("3c:22:fb:%02x:%02x:%02x", number_ >> 16 & 255, number_ >> 8 & 255,
                      number_ & 255);
}

std::string FleetMac::diskModel() const {
  return formatString("APPLE SSD AP%04lldZ", static_cast<long long>(disk_ / kGigabyte));
}

std::string FleetMac::hardware() const {
  const Model& model = kModels[model_];
  std::string item = text("_name", "hardware_overview");
  if (isSilicon()) {
    item += text("chip_type", model.chip) +
            text("number_processors", formatString("proc %d:4:%d", model.cores, model.cores - 4));
  } else {
    item += text("cpu_type", model.chip) + text("current_processor_speed", "2.6 GHz") +
            text("l2_cache_core", "256 KB") + text("l3_cache", "6 MB") +
            integer("number_processors", model.cores) + integer("packages", 1);
  }
  item += text("boot_rom_version", formatString("%s.0.0", kSystems[system_].build)) +
          text("machine_model", model.id) + text("machine_name", model.name) +
          text("physical_memory", formatString("%d GB", memory_));
  if (!uuid_.empty()) item += text("platform_UUID", uuid_);
  if (!serial_.empty()) item += text("serial_number", serial_);
  return dataType("SPHardwareDataType", dictionary(item));
}

std::string FleetMac::software() const {
  const System& system = kSystems[system_];
  return dataType(
      "SPSoftwareDataType",
      dictionary(text("64bit_kernel_and_kexts", "yes") + text("_name", "os_overview") +
                 text("boot_volume", "Macintosh HD") +
                 text("kernel_version", formatString("Darwin %s", system.kernel)) +
                 text("local_host_name", name_) +
                 text("os_version", formatString("macOS %s (%s)", system.version, system.build)) +
                 text("system_integrity", "integrity_enabled") +
                 text("uptime", formatString("up %d:4:07:08", uptime_)) +
                 text("user_name", user_ + " (" + user_ + ")")));
}

std::string FleetMac::memory() const {
  const Model& model = kModels[model_];
  if (isSilicon()) {
    return dataType("SPMemoryDataType",
                    dictionary(text("SPMemoryDataType", formatString("%d GB", memory_)) +
                               text("dimm_manufacturer", "Corvane") + text("dimm_type", "LPDDR5")));
  }
  std::string slots;
  for (int i = 0; i < model.slots; ++i) {
    const std::string name = text("_name", formatString("BANK %d/DIMM0", i));
    slots += i < 2
                 ? dictionary(name + text("dimm_manufacturer", "0x1F3C") +
                              text("dimm_serial_number", formatString("0x%08X", number_ * 2 + i)) +
                              text("dimm_size", formatString("%d GB", memory_ / 2)) +
                              text("dimm_speed", "2667 MHz") + text("dimm_status", "ok") +
                              text("dimm_type", "DDR4"))
                 : dictionary(name + text("dimm_size", "empty") + text("dimm_status", "empty"));
  }
  return dataType("SPMemoryDataType", dictionary(array("_items", slots)));
}

std::string FleetMac::disk() const {
  const bool hfs =
      system_ == 0;  // later systems start from APFS, of which no volumes are listed here
  const std::string volume = dictionary(
      text("_name", "Macintosh HD") + text("bsd_name", "disk0s2") +
      (hfs ? text("file_system", "Journaled HFS+") + text("free_space", gigabytes(free_)) +
                 integer("free_space_in_bytes", free_) + text("mount_point", "/")
           : text("iocontent", "Apple_APFS")) +
      text("size", gigabytes(disk_)) + integer("size_in_bytes", disk_));
  const std::string drive = dictionary(
      text("_name", diskModel()) + text("bsd_name", "disk0") + text("device_model", diskModel()) +
      text("device_revision", "2973.41") +
      text("device_serial", formatString("0dea%012d", number_)) + text("size", gigabytes(disk_)) +
      integer("size_in_bytes", disk_) + text("smart_status", failing_ ? "Failing" : "Verified") +
      text("spnvme_trim_support", "Yes") + array("volumes", volume));
  return dataType(model_ < 2 ? "SPSerialATADataType" : "SPNVMeDataType",
                  dictionary(array("_items", drive) + text("_name", "SSD Controller")));
}

std::string FleetMac::storage() const {
  const auto volume = [this](const char* name, const char* device, const char* place) {
    return dictionary(
        text("_name", name) + text("bsd_name", device) + text("file_system", "APFS") +
        integer("free_space_in_bytes", free_) + text("mount_point", place) +
        dictionary("physical_drive",
                   text("device_name", diskModel()) + text("is_internal_disk", "yes") +
                       text("medium_type", "ssd") + text("protocol", "Apple Fabric") +
                       text("smart_status", failing_ ? "Failing" : "Verified")) +
        integer("size_in_bytes", disk_) +
        text("volume_uuid",
             formatString("%035d", number_) + place[std::string_view(place).size() - 1]) +
        text("writable", "yes"));
  };
  return dataType("SPStorageDataType", volume("Data", "disk3s5", "/System/Volumes/Data") +
                                           volume("Macintosh HD", "disk3s1s1", "/"));
}

std::string FleetMac::network() const {
  const std::string ip =
      formatString("10.%d.%d.%d", number_ >> 16 & 255, number_ >> 8 & 255, number_ & 255);
  const std::string wifi = dictionary(
      dictionary("Ethernet", text("MAC Address", address())) +
      dictionary("IPv4", texts("Addresses", {ip}) + text("ConfigMethod", "DHCP") +
                             text("Router", "10.0.0.1") + texts("SubnetMasks", {"255.0.0.0"})) +
      text("_name", "Wi-Fi") + text("hardware", "AirPort") + text("interface", "en0") +
      texts("ip_address", {ip}) + text("type", "AirPort"));
  const std::string bridge = dictionary(
      dictionary("IPv4", text("ConfigMethod", "DHCP")) + text("_name", "Thunderbolt Bridge") +
      text("hardware", "Ethernet") + text("interface", "bridge0") + text("type", "Ethernet"));
  return dataType("SPNetworkDataType", wifi + bridge);
}

std::string FleetMac::locations() const {
  const std::string service =
      dictionary(dictionary("SMB", text("NetBIOSName", name_) + text("Workgroup", "WORKGROUP")) +
                 text("_name", "Wi-Fi") + text("bsd_device_name", "en0") +
                 text("hardware_address", address()));
  return dataType(
      "SPNetworkLocationDataType",
      dictionary(text("_name", "Automatic") + text("spnetworklocation_isActive", "yes") +
                 array("spnetworklocation_services", service)));
}

std::string FleetMac::displays() const {
  const std::string panel =
      dictionary(text("_name", "Color LCD") + text("_spdisplays_pixels", "2560 x 1600") +
                 text("_spdisplays_resolution", "1440 x 900") +
                 text("spdisplays_connection_type", "spdisplays_internal") +
                 text("spdisplays_main", "spdisplays_yes"));
  const char* adapter = isSilicon() ? kModels[model_].chip : "Intel HD Graphics 4000";
  return dataType(
      "SPDisplaysDataType",
      dictionary(text("_name", adapter) + array("spdisplays_ndrvs", panel) +
                 text("sppci_bus", "spdisplays_builtin") + text("sppci_model", adapter)));
}

std::string FleetMac::power() const {
  const std::string battery = dictionary(
      text("_name", "spbattery_information") +
      dictionary("sppower_battery_charge_info",
                 text("sppower_battery_is_charging", "TRUE") +
                     integer("sppower_battery_state_of_charge", 20 + cycles_ % 80)) +
      dictionary("sppower_battery_health_info",
                 integer("sppower_battery_cycle_count", cycles_) +
                     text("sppower_battery_health", cycles_ > 850 ? "Check Battery" : "Good")) +
      dictionary("sppower_battery_model_info",
                 text("sppower_battery_serial_number", formatString("F8Y%09d", number_))));
  const auto profile = [](const char* name, int display) {
    return dictionary(name, integer("Disk Sleep Timer", 10) +
                                integer("Display Sleep Timer", display) +
                                text("Sleep On Power Button", "Yes") +
                                integer("System Sleep Timer", 1) + text("Wake On LAN", "Yes"));
  };
  return dataType("SPPowerDataType",
                  (std::string_view(kModels[model_].name).starts_with("MacBook") ? battery : "") +
                      dictionary(profile("AC Power", 10) + profile("Battery Power", 2) +
                                 text("_name", "sppower_information")));
}

std::string FleetMac::firewall() const {
  const std::string rules =
      dictionary("spfirewall_applications", text("com.example.sync", "spfirewall_allow_all") +
                                                text("com.example.chat", "spfirewall_block_all"));
  return dataType("SPFirewallDataType",
                  dictionary(text("_name", "spfirewall_settings") + (firewall_ ? rules : "") +
                             text("spfirewall_globalstate",
                                  firewall_ ? "spfirewall_globalstate_limit_connections"
                                            : "spfirewall_globalstate_allow_all") +
                             text("spfirewall_loggingenabled", "No") +
                             text("spfirewall_stealthenabled", firewall_ ? "Yes" : "No")));
}

std::string FleetMac::applications() const {
  std::string items;
  for (const auto& [number, release] : applications_) {
    const bool system = number < kSystemApplications;
    const std::string version = number == 0 ? kSystems[system_].browser
                                : system    ? releaseName(number, static_cast<int>(system_))
                                            : releaseName(number, release);
    const std::string path =
        (system ? "/System/Applications/" : "/Applications/") + applicationName(number) + ".app";
    const std::string maker = formatString("Developer ID Application: Maker %d", number % 170);
    items += dictionary(
        text("_name", applicationName(number)) + text("app_store", number % 7 == 0 ? "yes" : "no") +
        text("has64BitIntelCode", "yes") +
        text("info",
             formatString("%s, Copyright 2009-2025 Maker %d.", version.c_str(), number % 170)) +
        formatString(
            "\t\t\t\t<key>lastModified</key>\n\t\t\t\t<date>20%02d-%02d-11T09:40:12Z</date>\n",
            14 + release / 3, 1 + number % 12) +
        text("location", path) +
        text("obtained_from", system            ? "apple"
                              : number % 7 == 0 ? "mac_app_store"
                                                : "identified_developer") +
        text("path", path) +
        text("runtime_environment", isSilicon() ? "arch_arm_i64" : "arch_x86") +
        texts("signed_by", {system ? "Software Signing" : maker,
                            "Developer ID Certification Authority", "Apple Root CA"}) +
        text("version", version));
  }
  return dataType("SPApplicationsDataType", items);
}

void FleetMac::addProcesses(FakeHost& host) {
  host.processes = {
      {0, 0, "kernel_task"}
  };
  int pid = 1;
  for (int i = 0; i < kProcesses; ++i) {
    const bool daemon = i < kProcesses * 2 / 3;
    const std::string name =
        daemon ? formatString("%.4sd%d", kFirst[static_cast<std::size_t>(i) % std::size(kFirst)], i)
               : applicationName(applications_[static_cast<std::size_t>(i)].number);
    host.processes.push_back({pid, 1, i == 0 ? "launchd" : name.substr(0, 16)});
    const std::string program = i == 0   ? "/sbin/launchd"
                                : daemon ? "/usr/libexec/" + name
                                         : "/Applications/" + name + ".app/Contents/MacOS/" + name;
    host.outputs[formatString("ps -p%d -o user=\"\" -o command=\"\"", pid)] =
        (daemon ? "root" : user_) + " " + program + "\n";
    pid += 1 + upTo(30);
  }
}

void FleetMac::answer(FakeHost& host, double time) {
  const std::pair<const char*, std::string> parts[] = {
      {"SPHardwareDataType",                                  hardware()    },
      {"SPNetworkDataType",                                   network()     },
      {"SPSoftwareDataType",                                  software()    },
      {"SPDisplaysDataType",                                  displays()    },
      {"SPMemoryDataType",                                    memory()      },
      {model_ < 2 ? "SPSerialATADataType" : "SPNVMeDataType", disk()        },
      {"SPFirewallDataType",                                  firewall()    },
      {"SPNetworkLocationDataType",                           locations()   },
      {"SPApplicationsDataType",                              applications()},
      {"SPStorageDataType",                                   storage()     },
      {"SPPowerDataType",                                     power()       },
  };
  host.outputs.clear();
  host.commands.clear();
  host.readSizes.clear();
  host.name = name_;
  host.times = {time, time + 40};
  std::string all;
  for (const auto& [name, part] : parts) {
    if (debug()) {
      all += part;
    } else {
      host.outputs[std::string("system_profiler -detailLevel full -xml ") + name] = document(part);
    }
  }
  if (debug()) host.outputs["system_profiler -detailLevel full -xml"] = document(all);
  host.outputs["ls -1 /Users/"] = "Shared\n" + user_ + "\nsupport\n";
  for (const std::string& account : {user_, std::string("support")}) {
    host.outputs["dscl . -read \"/users/" + account + "\""] =
        "AppleMetaNodeLocation: /Local/Default\nNFSHomeDirectory: /Users/" + account +
        "\nPassword: ********\nPrimaryGroupID: 20\nRealName:\n " + account +
        "\nRecordName: " + account +
        "\nRecordType: dsRecTypeStandard:Users\nUniqueID: 501\nUserShell: /bin/zsh\n";
  }
  host.outputs["env"] = "SHELL=/bin/zsh\nUSER=" + user_ +
                        "\nPATH=/usr/bin:/bin:/usr/sbin:/sbin\nHOME=/Users/" + user_ +
                        "\nLANG=en_US.UTF-8\n";
  addProcesses(host);
}
