#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// What can be asked of a Mac: the tables and their columns, as data. Everything that prints,
// searches, compares or stores tables walks this schema and knows no table by name, unless it draws
// one specially. docs/tables.md is this page for people; a test keeps the two equal.

namespace machine {

enum class Type : std::uint8_t { Text, Integer, Real, Flag };

// How a row is told from others of its table, in this file and in another one: by the values of its
// columns marked First when it has them, else by those marked Second, else by its place. Several
// columns with the same mark count together. The same value of a column marked Sure settles it
// before all others; another value says nothing.
enum class Identity : std::uint8_t { No, First, Second, Sure };

// Whether a value changes although nobody changed the machine: free space, times, process numbers,
// which of its networks it uses.
enum class Changes : std::uint8_t { No, Yes };

// What a value gives away about a person or a machine, if anything.
enum class Secret : std::uint8_t {
  None,
  Serial,           // serial numbers of machines and parts
  HardwareAddress,  // "F8-4D-89-00-11-22"
  NetworkAddress,   // IPv4 and IPv6 addresses, alone or in a list with ", "
  Uuid,
  User,      // short and full names of people
  Host,      // names of the machine, its domain
  Home,      // paths of home folders, and paths that may lie in one
  FreeText,  // texts that people wrote, which may hold any of the above: names of volumes and
             // networks
  Whole,     // anything may stand in it: values of the environment, arguments of processes
};

struct Column {
  std::string_view name;  // with the unit in it: "size_bytes"
  Type type;
  Identity identity;
  Changes changes;
  Secret secret;
  std::string_view unit;  // "" for numbers that count and for what is no number
  std::string_view meaning;
};

struct Table {
  std::string_view name;
  bool single;  // has one row
  std::string_view meaning;
  std::span<const Column> columns;
  std::string_view thing;  // what one row is
};

// Rows that come and go although nobody changed the machine: those whose column has this value, as
// valueText shows it; all of the table when no column is named.
struct Passing {
  std::string_view table;
  std::string_view column;
  std::string_view value;
};

namespace schema {

inline constexpr Type Text = Type::Text;
inline constexpr Type Integer = Type::Integer;
inline constexpr Type Real = Type::Real;
inline constexpr Type Flag = Type::Flag;
inline constexpr Identity No = Identity::No;
inline constexpr Identity First = Identity::First;
inline constexpr Identity Second = Identity::Second;
inline constexpr Identity Sure = Identity::Sure;
inline constexpr Changes Stays = Changes::No;
inline constexpr Changes Moves = Changes::Yes;

// clang-format off
inline constexpr Column kMachine[] = {
  {"serial",              Text,    First,  Stays, Secret::Serial,          "",      "serial number of the machine"},
  {"uuid",                Text,    Second, Stays, Secret::Uuid,            "",      "hardware UUID, upper case"},
  {"name",                Text,    No,     Stays, Secret::Host,            "",      "the name that its owner gave it"},
  {"netbios_name",        Text,    No,     Stays, Secret::Host,            "",      "name of the active connection for file sharing"},
  {"local_hostname",      Text,    No,     Stays, Secret::Host,            "",      "its name on the local network, without \".local\""},
  {"workgroup",           Text,    No,     Stays, Secret::Host,            "",      "workgroup of the active connection, upper case"},
  {"user",                Text,    No,     Stays, Secret::User,            "",      "short name of the user who was logged in, or who scanned"},
  {"user_full_name",      Text,    No,     Stays, Secret::User,            "",      "full name of that user"},
  {"login",               Text,    No,     Stays, Secret::User,            "",      "the account that the scan was told to note"},
  {"model_id",            Text,    No,     Stays, Secret::None,            "",      "model identifier: \"MacBookPro18,3\""},
  {"model_name",          Text,    No,     Stays, Secret::None,            "",      "\"MacBook Pro\""},
  {"model_number",        Text,    No,     Stays, Secret::None,            "",      "order number: \"MKGR3LL/A\""},
  {"virtual",             Flag,    No,     Stays, Secret::None,            "",      "whether it is a virtual machine"},
  {"os_name",             Text,    No,     Stays, Secret::None,            "",      "\"macOS\", \"OS X\" or \"Mac OS X\""},
  {"os_version",          Text,    No,     Stays, Secret::None,            "",      "\"14.5\""},
  {"os_build",            Text,    No,     Stays, Secret::None,            "",      "\"23F79\""},
  {"os_marketing_name",   Text,    No,     Stays, Secret::None,            "",      "\"Sonoma\"; nothing for a system newer than this program"},
  {"kernel",              Text,    No,     Stays, Secret::None,            "",      "\"Darwin 23.5.0\""},
  {"architecture",        Text,    No,     Stays, Secret::None,            "",      "\"arm64\", \"x86_64\", \"i386\" or \"ppc\""},
  {"chip",                Text,    No,     Stays, Secret::None,            "",      "processor: \"Apple M1 Pro\", \"Quad-Core Intel Core i7\""},
  {"packages",            Integer, No,     Stays, Secret::None,            "",      "processor packages"},
  {"cores",               Integer, No,     Stays, Secret::None,            "",      "cores of all packages"},
  {"super_cores",         Integer, No,     Stays, Secret::None,            "",      "the fastest kind of three"},
  {"performance_cores",   Integer, No,     Stays, Secret::None,            "",      "fast cores"},
  {"efficiency_cores",    Integer, No,     Stays, Secret::None,            "",      "thrifty cores"},
  {"clock_mhz",           Integer, No,     Stays, Secret::None,            "MHz",   "speed of the processor"},
  {"l2_cache_kb",         Integer, No,     Stays, Secret::None,            "KB",    "level 2 cache as reported, of a core or of all; 1 KB is 2^10 bytes"},
  {"l3_cache_kb",         Integer, No,     Stays, Secret::None,            "KB",    "level 3 cache; 1 KB is 2^10 bytes"},
  {"memory_mb",           Integer, No,     Stays, Secret::None,            "MB",    "memory; 1 MB is 2^20 bytes"},
  {"firmware",            Text,    No,     Stays, Secret::None,            "",      "version of the boot ROM or system firmware"},
  {"activation_lock",     Flag,    No,     Stays, Secret::None,            "",      "whether the activation lock is on"},
  {"integrity_protection",Flag,    No,     Stays, Secret::None,            "",      "whether the system integrity protection is on"},
  {"boot_volume",         Text,    No,     Stays, Secret::FreeText,        "",      "name of the volume that the system started from"},
  {"uptime_seconds",      Integer, No,     Moves, Secret::None,            "s",     "since the machine was started"},
  {"ip_address",          Text,    No,     Moves, Secret::NetworkAddress,  "",      "address of the active connection"},
  {"static_ip",           Flag,    No,     Moves, Secret::None,            "",      "whether that address was set by hand"},
  {"mac_address",         Text,    No,     Moves, Secret::HardwareAddress, "",      "hardware address of the active connection: \"F8-4D-89-00-11-22\""},
  {"scanned_at",          Text,    No,     Moves, Secret::None,            "",      "when the machine was scanned: \"2026-11-21T16:22:05+01:00\""},
  {"scan_ms",             Integer, No,     Moves, Secret::None,            "ms",    "how long the scan took, in steps of a second"},
  {"agent_version",       Text,    No,     Moves, Secret::None,            "",      "version of the agent"},
  {"source",              Text,    No,     Moves, Secret::None,            "",      "what the file holds: \"snapshot\" or \"debug\""},
};

inline constexpr Column kMemory[] = {
  {"slot",          Text,    First,  Stays, Secret::None,   "",    "what the machine calls the slot; nothing for soldered memory"},
  {"used",          Flag,    No,     Stays, Secret::None,   "",    "whether a working module is in it"},
  {"soldered",      Flag,    No,     Stays, Secret::None,   "",    "whether it is part of the board"},
  {"size_mb",       Integer, No,     Stays, Secret::None,   "MB",  "1 MB is 2^20 bytes"},
  {"type",          Text,    No,     Stays, Secret::None,   "",    "\"DDR4\", \"LPDDR5\""},
  {"speed_mhz",     Integer, No,     Stays, Secret::None,   "MHz", "clock of the module"},
  {"manufacturer",  Text,    No,     Stays, Secret::None,   "",    "maker, sometimes as a code"},
  {"part_number",   Text,    No,     Stays, Secret::None,   "",    "as the module states it"},
  {"serial",        Text,    No,     Stays, Secret::Serial, "",    "as the module states it"},
  {"status",        Text,    No,     Stays, Secret::None,   "",    "as the machine states it: \"ok\", \"empty\""},
};

inline constexpr Column kDisks[] = {
  {"serial",     Text,    First,  Stays, Secret::Serial, "",      "as the drive states it"},
  {"model",      Text,    Second, Stays, Secret::None,   "",      "as the drive states it"},
  {"bsd_name",   Text,    No,     Moves, Secret::None,   "",      "device name: \"disk0\""},
  {"size_bytes", Integer, No,     Stays, Secret::None,   "bytes", "capacity"},
  {"interface",  Text,    No,     Stays, Secret::None,   "",      "\"SATA\", \"SCSI\", \"PATA\", \"PCI-Express\", \"USB\" or as the machine says"},
  {"kind",       Text,    No,     Stays, Secret::None,   "",      "\"ssd\", \"rotational\", \"optical\" or \"removable\""},
  {"internal",   Flag,    No,     Stays, Secret::None,   "",      "whether it is built in"},
  {"health",     Text,    No,     Stays, Secret::None,   "",      "\"verified\" or \"failing\" (S.M.A.R.T.)"},
  {"trim",       Flag,    No,     Stays, Secret::None,   "",      "whether TRIM is in use"},
  {"firmware",   Text,    No,     Stays, Secret::None,   "",      "revision of the firmware"},
};

inline constexpr Column kVolumes[] = {
  {"mount_point", Text,    First,  Stays, Secret::FreeText, "",      "where it is mounted"},
  {"name",        Text,    Second, Stays, Secret::FreeText, "",      "its name"},
  {"bsd_name",    Text,    No,     Moves, Secret::None,     "",      "device name: \"disk1s1\""},
  {"uuid",        Text,    Sure,   Stays, Secret::Uuid,     "",      "UUID of the volume"},
  {"file_system", Text,    No,     Stays, Secret::None,     "",      "\"APFS\", \"Journaled HFS+\""},
  {"size_bytes",  Integer, No,     Stays, Secret::None,     "bytes", "capacity; APFS volumes of one container share it"},
  {"free_bytes",  Integer, No,     Moves, Secret::None,     "bytes", "free; APFS volumes of one container share it"},
  {"container",   Text,    No,     Moves, Secret::None,     "",      "what volumes share that have one pool of space: sum space once for each; a key within this file"},
  {"encrypted",   Flag,    No,     Stays, Secret::None,     "",      "whether it is encrypted"},
  {"writable",    Flag,    No,     Stays, Secret::None,     "",      "whether it can be written to"},
  {"internal",    Flag,    No,     Stays, Secret::None,     "",      "whether its disk is built in"},
  {"disk_model",  Text,    No,     Stays, Secret::None,     "",      "model of the disk that it is on"},
};

inline constexpr Column kAdapters[] = {
  {"interface",      Text, First,  Stays, Secret::None,            "", "\"en0\""},
  {"name",           Text, Second, Stays, Secret::FreeText,        "", "name of the network service"},
  {"type",           Text, No,     Stays, Secret::None,            "", "\"Ethernet\", \"AirPort\""},
  {"mac_address",    Text, No,     Stays, Secret::HardwareAddress, "", "hardware address: \"F8-4D-89-00-11-22\""},
  {"ip_addresses",   Text, No,     Moves, Secret::NetworkAddress,  "", "IPv4 addresses with \", \" between them"},
  {"subnet_masks",   Text, No,     Moves, Secret::None,            "", "in the order of the addresses"},
  {"gateway",        Text, No,     Moves, Secret::NetworkAddress,  "", "router for IPv4"},
  {"ipv6_addresses", Text, No,     Moves, Secret::NetworkAddress,  "", "with \", \" between them"},
  {"method",         Text, No,     Stays, Secret::None,            "", "how IPv4 is set up: \"DHCP\", \"Manual\""},
  {"dns_servers",    Text, No,     Moves, Secret::NetworkAddress,  "", "with \", \" between them"},
  {"dns_domain",     Text, No,     Moves, Secret::Host,            "", "domain name that is searched"},
  {"dhcp_server",    Text, No,     Moves, Secret::NetworkAddress,  "", "server that gave the address"},
  {"wifi_network",   Text, No,     Moves, Secret::FreeText,        "", "name of the Wi-Fi network that it is in"},
};

inline constexpr Column kUsb[] = {
  {"serial",       Text,    First,  Stays, Secret::Serial, "",       "as the device states it"},
  {"name",         Text,    Second, Stays, Secret::None,   "",       "as the device states it"},
  {"location",     Text,    No,     Moves, Secret::None,   "",       "place in the tree: \"0x14200000\""},
  {"vendor_id",    Text,    Second, Stays, Secret::None,   "",       "four hexadecimal digits: \"05ac\""},
  {"product_id",   Text,    Second, Stays, Secret::None,   "",       "four hexadecimal digits"},
  {"manufacturer", Text,    No,     Stays, Secret::None,   "",       "as the device states it"},
  {"version",      Text,    No,     Stays, Secret::None,   "",       "revision of the device"},
  {"speed_mbit_s", Real,    No,     Stays, Secret::None,   "Mbit/s", "speed of the connection"},
  {"power_ma",     Integer, No,     Stays, Secret::None,   "mA",     "current that it asks for"},
  {"hub",          Flag,    No,     Stays, Secret::None,   "",       "whether other devices are connected by it"},
  {"parent",       Text,    No,     Stays, Secret::None,   "",       "name of the hub or bus that it is connected to"},
};

inline constexpr Column kDisplays[] = {
  {"serial",       Text,    First,  Stays, Secret::Serial, "",       "as the display states it"},
  {"name",         Text,    Second, Stays, Secret::None,   "",       "what the system calls it"},
  {"model",        Text,    No,     Stays, Secret::None,   "",       "as the display states it"},
  {"manufacturer", Text,    No,     Stays, Secret::None,   "",       "three letters: \"DEL\""},
  {"product_id",   Text,    No,     Stays, Secret::None,   "",       "four hexadecimal digits"},
  {"made_on",      Text,    No,     Stays, Secret::None,   "",       "first day of the week or year of manufacture: \"2017-05-14\""},
  {"main",         Flag,    No,     Stays, Secret::None,   "",       "whether it has the menu bar"},
  {"built_in",     Flag,    No,     Stays, Secret::None,   "",       "whether it is part of the machine"},
  {"virtual",      Flag,    No,     Stays, Secret::None,   "",       "whether it is no panel of its own: AirPlay, Sidecar"},
  {"width_px",     Integer, No,     Stays, Secret::None,   "pixels", "width that is driven"},
  {"height_px",    Integer, No,     Stays, Secret::None,   "pixels", "height that is driven"},
  {"refresh_hz",   Real,    No,     Stays, Secret::None,   "Hz",     "refresh rate"},
  {"diagonal_in",  Real,    No,     Stays, Secret::None,   "in",     "diagonal of the picture"},
  {"connection",   Text,    No,     Stays, Secret::None,   "",       "\"Built-in\", \"DisplayPort\", \"AirPlay\""},
  {"adapter",      Text,    No,     Moves, Secret::None,   "",       "video adapter that drives it"},
};

inline constexpr Column kVideo[] = {
  {"model",        Text,    First, Stays, Secret::None, "",   "\"Apple M1 Pro\", \"AMD Radeon Pro 5300M\""},
  {"vendor",       Text,    No,    Stays, Secret::None, "",   "maker"},
  {"device_id",    Text,    No,    Stays, Secret::None, "",   "as reported: \"0x7340\""},
  {"revision_id",  Text,    No,    Stays, Secret::None, "",   "as reported"},
  {"rom_revision", Text,    No,    Stays, Secret::None, "",   "as reported"},
  {"bus",          Text,    No,    Stays, Secret::None, "",   "\"PCIe\", \"Built-in\""},
  {"pcie_width",   Text,    No,    Stays, Secret::None, "",   "lanes of the bus: \"x16\""},
  {"cores",        Integer, No,    Stays, Secret::None, "",   "graphics cores"},
  {"memory_mb",    Integer, No,    Stays, Secret::None, "MB", "1 MB is 2^20 bytes"},
  {"metal",        Text,    No,    Stays, Secret::None, "",   "what it can do of Metal, as reported"},
};

inline constexpr Column kPrinters[] = {
  {"name",           Text, First, Stays, Secret::FreeText, "", "what the system calls it"},
  {"kind",           Text, No,    Stays, Secret::None,     "", "\"printer\", \"multifunction\" or \"scanner\""},
  {"default",        Flag, No,    Stays, Secret::None,     "", "whether documents go to it by default"},
  {"status",         Text, No,    Moves, Secret::None,     "", "\"idle\""},
  {"fax",            Flag, No,    Stays, Secret::None,     "", "whether it sends faxes"},
  {"uri",            Text, No,    Stays, Secret::FreeText, "", "where it is"},
  {"driver_version", Text, No,    Stays, Secret::None,     "", "version of the driver"},
  {"ppd",            Text, No,    Stays, Secret::None,     "", "printer description in use"},
  {"ppd_version",    Text, No,    Stays, Secret::None,     "", "version of the description"},
  {"print_server",   Text, No,    Stays, Secret::FreeText, "", "server that it belongs to"},
  {"scanner_uuid",   Text, No,    Stays, Secret::Uuid,     "", "UUID of the scanner"},
  {"scanner_app",    Text, No,    Stays, Secret::None,     "", "application that scans, a path"},
};

inline constexpr Column kSoftware[] = {
  {"path",         Text, First,  Stays, Secret::Home, "", "where it is"},
  {"name",         Text, Second, Stays, Secret::None, "", "its name"},
  {"version",      Text, No,     Stays, Secret::None, "", "its version"},
  {"architecture", Text, No,     Stays, Secret::None, "", "\"universal\", \"arm64\", \"x86_64\", \"i386\", \"ppc\" or \"ios\""},
  {"is_64bit",     Flag, No,     Stays, Secret::None, "", "whether it runs as 64-bit"},
  {"origin",       Text, No,     Stays, Secret::None, "", "\"apple\", \"app_store\", \"identified_developer\" or \"unknown\""},
  {"signed_by",    Text, No,     Stays, Secret::None, "", "names of the signing certificates with \", \" between them"},
  {"modified_on",  Text, No,     Moves, Secret::None, "", "day of the last change: \"2024-05-01\""},
  {"info",         Text, No,     Stays, Secret::None, "", "what it says about itself"},
};

inline constexpr Column kPlugins[] = {
  {"path",        Text, First,  Stays, Secret::Home, "", "where it is"},
  {"name",        Text, Second, Stays, Secret::None, "", "its name"},
  {"version",     Text, No,     Stays, Secret::None, "", "its version"},
  {"description", Text, No,     Stays, Secret::None, "", "what it says about itself"},
};

inline constexpr Column kUsers[] = {
  {"name",      Text,    First, Stays, Secret::User, "", "short name"},
  {"full_name", Text,    No,    Stays, Secret::User, "", "full name"},
  {"uid",       Integer, No,    Stays, Secret::None, "", "number of the user"},
  {"gid",       Integer, No,    Stays, Secret::None, "", "number of the primary group"},
  {"home",      Text,    No,    Stays, Secret::Home, "", "its folder in /Users"},
  {"shell",     Text,    No,    Stays, Secret::None, "", "login shell"},
};

inline constexpr Column kProcesses[] = {
  {"name",    Text,    First, Stays, Secret::None,  "", "short name, of at most 16 bytes"},
  {"user",    Text,    First, Stays, Secret::User,  "", "owner"},
  {"pid",     Integer, No,    Moves, Secret::None,  "", "number of the process"},
  {"ppid",    Integer, No,    Moves, Secret::None,  "", "number of the process that started it"},
  {"command", Text,    First, Moves, Secret::Whole, "", "program and arguments"},
};

inline constexpr Column kEnvironment[] = {
  {"name",  Text, First, Stays, Secret::None,  "", "name of the variable"},
  {"value", Text, No,    Stays, Secret::Whole, "", "its value"},
};

inline constexpr Column kFirewall[] = {
  {"kind",    Text, First, Stays, Secret::None, "", "\"global\", \"service\" or \"application\""},
  {"name",    Text, First, Stays, Secret::None, "", "of global settings \"mode\", \"stealth_mode\" or \"logging\", else what the rule is for"},
  {"setting", Text, No,    Stays, Secret::None, "", "of the mode \"allow_all\", \"limit\" or \"block_all\"; \"on\" or \"off\"; of a rule \"allow\", \"block\" or \"local_only\""},
};

inline constexpr Column kPower[] = {
  {"profile",                Text,    First, Stays, Secret::None, "",    "\"AC Power\", \"Battery Power\", \"UPS Power\""},
  {"system_sleep_min",       Integer, No,    Stays, Secret::None, "min", "idle time until the Mac sleeps; 0 never"},
  {"disk_sleep_min",         Integer, No,    Stays, Secret::None, "min", "the same for disks"},
  {"display_sleep_min",      Integer, No,    Stays, Secret::None, "min", "the same for displays"},
  {"sleep_on_power_button",  Flag,    No,    Stays, Secret::None, "",    "whether the power button makes it sleep"},
  {"restart_on_power_loss",  Flag,    No,    Stays, Secret::None, "",    "whether it starts by itself when power returns"},
  {"wake_on_lan",            Flag,    No,    Stays, Secret::None, "",    "whether the network can wake it"},
  {"wake_on_ac_change",      Flag,    No,    Stays, Secret::None, "",    "whether connecting power wakes it"},
  {"wake_on_clamshell_open", Flag,    No,    Stays, Secret::None, "",    "whether opening the lid wakes it"},
  {"reduce_brightness",      Flag,    No,    Stays, Secret::None, "",    "whether the display is darker with this profile"},
  {"dim_before_sleep",       Flag,    No,    Stays, Secret::None, "",    "whether the display dims before it sleeps"},
  {"hibernate_mode",         Integer, No,    Stays, Secret::None, "",    "mode of safe sleep"},
  {"low_power_mode",         Flag,    No,    Stays, Secret::None, "",    "whether the low power mode is on"},
};

inline constexpr Column kBattery[] = {
  {"serial",               Text,    First,  Stays, Secret::Serial, "",   "as the battery states it"},
  {"model",                Text,    Second, Stays, Secret::None,   "",   "as the battery states it"},
  {"manufacturer",         Text,    No,     Stays, Secret::None,   "",   "maker"},
  {"condition",            Text,    No,     Stays, Secret::None,   "",   "as reported: \"Good\", \"Service\""},
  {"cycles",               Integer, No,     Moves, Secret::None,   "",   "charge cycles"},
  {"maximum_capacity_pct", Integer, No,     Moves, Secret::None,   "%",  "what it can still hold, of what it could when new"},
  {"charge_pct",           Integer, No,     Moves, Secret::None,   "%",  "state of charge"},
  {"charging",             Flag,    No,     Moves, Secret::None,   "",   "whether it is being charged"},
  {"fully_charged",        Flag,    No,     Moves, Secret::None,   "",   "whether it is full"},
  {"firmware",             Text,    No,     Stays, Secret::None,   "",   "version of its firmware"},
};

inline constexpr Column kDevices[] = {
  {"kind",         Text, First,  Stays, Secret::None,            "", "\"bluetooth\", \"audio\", \"camera\", \"thunderbolt\", \"card_reader\" or \"wifi\""},
  {"name",         Text, First,  Stays, Secret::FreeText,        "", "its name"},
  {"address",      Text, First,  Stays, Secret::HardwareAddress, "", "hardware address: \"F8-4D-89-00-11-22\""},
  {"serial",       Text, No,     Stays, Secret::Serial,          "", "as the device states it"},
  {"manufacturer", Text, No,     Stays, Secret::None,            "", "maker, or its number: \"0x05ac\""},
  {"model",        Text, No,     Stays, Secret::None,            "", "its name or number, as reported"},
  {"firmware",     Text, No,     Stays, Secret::None,            "", "version of its firmware"},
  {"connection",   Text, No,     Stays, Secret::None,            "", "how it is connected: \"USB\", \"Built-in\""},
  {"connected",    Flag, No,     Moves, Secret::None,            "", "whether it is connected now, of Bluetooth"},
};
// clang-format on

}  // namespace schema

inline constexpr Table kTables[] = {
    {"machine",     true,  "the machine itself",                                    schema::kMachine,     "machine"        },
    {"memory",      false, "memory modules and slots",                              schema::kMemory,      "memory slot"    },
    {"disks",       false, "disks and drives",                                      schema::kDisks,       "disk"           },
    {"volumes",     false, "volumes that are mounted or tell what is free on them", schema::kVolumes,
     "volume"                                                                                                              },
    {"adapters",    false, "network services",                                      schema::kAdapters,    "network service"},
    {"usb",         false, "USB devices",                                           schema::kUsb,         "USB device"     },
    {"displays",    false, "displays",                                              schema::kDisplays,    "display"        },
    {"video",       false, "video adapters",                                        schema::kVideo,       "video adapter"  },
    {"printers",    false, "printers and scanners",                                 schema::kPrinters,    "printer"        },
    {"software",    false, "applications",                                          schema::kSoftware,    "application"    },
    {"plugins",     false, "internet plug-ins",                                     schema::kPlugins,     "plug-in"        },
    {"users",       false, "accounts with a folder in /Users",                      schema::kUsers,       "user"           },
    {"processes",   false, "running processes",                                     schema::kProcesses,   "process"        },
    {"environment", false, "environment of the process that scanned",               schema::kEnvironment,
     "variable"                                                                                                            },
    {"firewall",    false, "settings and rules of the firewall",                    schema::kFirewall,
     "firewall setting"                                                                                                    },
    {"power",       false, "power settings by profile",                             schema::kPower,       "power profile"  },
    {"battery",     false, "batteries",                                             schema::kBattery,     "battery"        },
    {"devices",     false, "other devices",                                         schema::kDevices,     "device"         },
};
inline constexpr std::size_t kTableCount = std::size(kTables);

// Newer systems mount disk images for themselves; displays without a panel are there while somebody
// shows something on them; headsets are audio devices while they are switched on.
inline constexpr Passing kPassing[] = {
    {"volumes",     "disk_model", "Disk Image"  },
    {"displays",    "virtual",    "true"        },
    {"processes",   "",           ""            },
    {"environment", "",           ""            },
    {"devices",     "connection", "AirPlay"     },
    {"devices",     "connection", "Bluetooth"   },
    {"devices",     "connection", "Bluetooth LE"},
};

// The place of a table or a column. Names that the schema lacks do not compile where the place is a
// constant; at run time use findTable and findColumn.
constexpr std::size_t tableAt(std::string_view name) {
  for (std::size_t i = 0; i < kTableCount; ++i) {
    if (kTables[i].name == name) return i;
  }
  throw "no such table";
}
constexpr std::size_t columnAt(std::string_view table, std::string_view name) {
  const Table& of = kTables[tableAt(table)];
  for (std::size_t i = 0; i < of.columns.size(); ++i) {
    if (of.columns[i].name == name) return i;
  }
  throw "no such column";
}

// Null when the schema has none of that name.
const Table* findTable(std::string_view name);
const Column* findColumn(const Table& table, std::string_view name);

}  // namespace machine
