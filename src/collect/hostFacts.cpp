#include "collect/hostFacts.h"

#include <cmath>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include "base/digits.h"
#include "base/formatString.h"
#include "base/quantities.h"
#include "base/text.h"
#include "collect/commandRunner.h"
#include "collect/osVersion.h"

using platform::PropertyList;

namespace {

// --- reading the profile; every step accepts null and passes it on

const PropertyList* find(const PropertyList* list, std::string_view key) {
  return list == nullptr ? nullptr : list->find(key);
}

const PropertyList* at(const PropertyList* list, std::size_t index) {
  return list == nullptr ? nullptr : list->at(index);
}

const PropertyList::Array& elements(const PropertyList* list) {
  static const PropertyList::Array kNone;
  return list == nullptr || list->array() == nullptr ? kNone : *list->array();
}

const SharedText* textOf(const PropertyList* value) {
  return value == nullptr ? nullptr : value->text();
}

std::string textOr(const PropertyList* value, std::string_view otherwise = "") {
  const SharedText* text = textOf(value);
  return std::string(text == nullptr ? otherwise : std::string_view(*text));
}

bool isText(const PropertyList* value, std::string_view expected) {
  const SharedText* text = textOf(value);
  return text != nullptr && *text == expected;
}

const PropertyList* itemsOf(const PropertyList& profile, std::string_view dataType) {
  const PropertyList* entry = nullptr;
  for (const PropertyList& candidate : elements(&profile)) {
    entry = &candidate;
    if (isText(candidate.find("_dataType"), dataType)) break;
  }
  return find(entry, "_items");
}

const PropertyList* firstItem(const PropertyList& profile, std::string_view dataType) {
  return at(itemsOf(profile, dataType), 0);
}

// --- texts of figures

std::string unsignedText(double number) {
  return formatString("%u", static_cast<unsigned>(truncateToInteger(number)));
}

std::string countText(const PropertyList* value) {
  const PropertyList::Number* number = value == nullptr ? nullptr : value->number();
  if (number == nullptr) return "";
  return isReal(number->type) ? unsignedText(number->real)
                              : formatString("%u", static_cast<unsigned>(number->integer));
}

// Binary gigabytes of a size text; nothing when there is no text, 0 for one that is too short.
std::optional<double> gigabytes(const PropertyList* value) {
  constexpr std::size_t kShortest = 3;
  const SharedText* text = textOf(value);
  if (text == nullptr) return std::nullopt;
  return text->size() < kShortest ? 0 : ParseSizeGB(*text);
}

std::string megabytesText(const PropertyList* value) {
  const std::optional<double> size = gigabytes(value);
  return size ? unsignedText(*size * 1024) : "";
}

// --- one data type each

void addSoftwareFacts(const PropertyList* item, HostFacts& facts) {
  const std::string user = textOr(find(item, "user_name"));  // "Ann Example (ann)"
  const std::size_t open = user.rfind('(');
  const std::size_t close = user.find(')', open);
  if (close != std::string::npos) facts.userName = user.substr(open + 1, close - open - 1);
  facts.localHostName = textOr(find(item, "local_host_name"));
  if (const SharedText* text = textOf(find(item, "os_version"))) {
    const OsVersion os = OsVersion::parse(*text);
    facts.osName = os.name;
    if (!os.update.empty()) facts.osVersion = formatString("Update %s ", os.update.c_str());
    facts.osVersion += formatString("Version(build) %s", os.version.c_str());
  }
}

void addHardwareFacts(platform::Host& host, const PropertyList* item, HostFacts& facts) {
  if (item == nullptr) return;
  if (const SharedText* speed = textOf(item->find("current_processor_speed"))) {
    facts.processorSpeed = unsignedText(std::atof(FirstWord(*speed).c_str()) * 1000);
  }
  facts.platformUuid = platformUuid(host);
  const std::string stated = textOr(item->find("platform_UUID"));
  if (stated.starts_with(facts.platformUuid)) facts.platformUuid = stated;  // it was cut, or silent
  facts.processorModel = textOr(item->find("cpu_type"));
  if (facts.processorModel.find("Intel") != std::string::npos) {
    facts.processorManufacturer = "GenuineIntel";
  }
  facts.packageCount = countText(item->find("packages"));
  facts.systemModel = textOr(item->find("machine_model"));
  facts.systemManufacturer = "Apple Inc.";
  facts.processorCount = countText(item->find("number_processors"));
  facts.physicalMemory = megabytesText(item->find("physical_memory"));
}

void addDiskFacts(const PropertyList* controllers, HostFacts& facts) {
  std::optional<double> capacity;
  std::optional<double> free;
  const auto add = [](std::optional<double>& sum, std::optional<double> size) {
    if (size) sum = sum.value_or(0) + *size;
  };
  for (const PropertyList& controller : elements(controllers)) {
    for (const PropertyList& drive : elements(controller.find("_items"))) {
      add(capacity, gigabytes(drive.find("size")));
      for (const PropertyList& volume : elements(drive.find("volumes"))) {
        add(free, gigabytes(volume.find("free_space")));
      }
    }
  }
  if (capacity) facts.diskCapacity = unsignedText(*capacity);
  if (free) facts.diskFree = formatString("%.1f", *free);
}

// Whole inches of the screen, from the image size that its EDID block states in centimetres.
std::string diagonalText(std::string_view edid) {
  constexpr std::size_t kImageSize = 21;  // bytes 21 and 22 of the block
  constexpr double kCentimetresPerInch = 2.54;
  const std::vector<std::uint8_t> block = hexadecimalBytes(edid);
  if (block.size() < kImageSize + 2) return "";
  const double diagonal = std::hypot(block[kImageSize], block[kImageSize + 1]);
  return unsignedText(std::round(diagonal / kCentimetresPerInch));
}

void addDisplayFacts(const PropertyList* item, HostFacts& facts) {
  facts.videoMemory = megabytesText(find(item, "spdisplays_vram"));
  for (const PropertyList& monitor : elements(find(item, "spdisplays_ndrvs"))) {
    if (!isText(monitor.find("spdisplays_main"), "spdisplays_yes")) continue;
    facts.resolution = textOr(monitor.find("spdisplays_resolution"));
    facts.monitorDiagonal = diagonalText(textOr(monitor.find("_spdisplays_edid")));
    return;
  }
}

// The interface of the active connection; null when there is none.
const PropertyList* activeInterface(const PropertyList& profile, const std::string& ipAddress) {
  for (const PropertyList& item : elements(itemsOf(profile, "SPNetworkDataType"))) {
    const std::string address = textOr(at(item.find("ip_address"), 0));
    const bool isActive = !address.empty() && textOr(item.find("interface")).starts_with("en");
    if (ipAddress.empty() ? isActive : address == ipAddress) return &item;
  }
  return nullptr;
}

const PropertyList* activeServices(const PropertyList& profile) {
  for (const PropertyList& location : elements(itemsOf(profile, "SPNetworkLocationDataType"))) {
    if (isText(location.find("spnetworklocation_isActive"), "yes")) {
      return location.find("spnetworklocation_services");
    }
  }
  return nullptr;
}

}  // namespace

HostFacts collectSoftwareHardwareFacts(platform::Host& host, const PropertyList& profile) {
  HostFacts facts;
  addSoftwareFacts(firstItem(profile, "SPSoftwareDataType"), facts);
  addHardwareFacts(host, firstItem(profile, "SPHardwareDataType"), facts);
  addDiskFacts(itemsOf(profile, "SPSerialATADataType"), facts);
  addDisplayFacts(firstItem(profile, "SPDisplaysDataType"), facts);
  return facts;
}

NetworkFacts collectNetworkFacts(const PropertyList& profile, const std::string& ipAddress) {
  NetworkFacts facts;
  facts.ipAddress = ipAddress;
  std::string address;  // as the profile writes it: services are compared with that
  if (const PropertyList* item = activeInterface(profile, ipAddress)) {
    if (ipAddress.empty()) facts.ipAddress = textOr(at(item->find("ip_address"), 0));
    facts.staticAddress = isText(find(item->find("IPv4"), "ConfigMethod"), "Manual");
    address = textOr(find(item->find("Ethernet"), "MAC Address"));
  }
  if (facts.ipAddress.empty()) facts.ipAddress = "0.0.0.0";
  facts.macAddress = dashedAddress(address);
  for (const PropertyList& service : elements(activeServices(profile))) {
    const PropertyList* smb = service.find("SMB");
    if (!isText(service.find("hardware_address"), address)) continue;
    const SharedText* workgroup = textOf(find(smb, "Workgroup"));
    if (workgroup == nullptr) continue;
    facts.domain = toUpper(*workgroup);
    facts.netbiosName = textOr(smb->find("NetBIOSName"));
    break;
  }
  return facts;
}

std::string serialNumber(const PropertyList& profile) {
  return textOr(find(firstItem(profile, "SPHardwareDataType"), "serial_number"));
}

std::string platformUuid(platform::Host& host) {
  constexpr std::int32_t kChunkSize = 40;  // bytes
  std::uint32_t length = 0;
  return runCommand(host,
                    "ioreg -rd1 -c IOPlatformExpertDevice | awk '/IOPlatformUUID/ { split($0, "
                    "line, \"\\\"\"); printf(\"%s\", line[4]); }'",
                    length, kChunkSize);
}
