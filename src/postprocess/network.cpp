#include "postprocess/network.h"

#include <string>

#include "base/text.h"
#include "postprocess/mapping.h"

namespace {

constexpr Row kAdapter[] = {
    {"bsd-device-name", {"interface"}, copied},
    {"type",            {"type"},      copied},
};

void writeJoined(const char* attribute, const Tag* list, Tag& adapter) {
  if (list == nullptr || list->attributeCount() == 0) return;
  std::string joined;
  for (const auto& element : list->attributes()) {
    if (element != *list->attributes().begin()) joined += ", ";
    joined += textOf(element->value());
  }
  adapter.setAttribute(attribute, TagValue(joined));
}

void writeHardwareAddress(const Tag* ethernet, Tag& adapter) {
  constexpr std::size_t kManufacturer = 8;  // "00-1B-63"
  if (ethernet == nullptr || !Item(*ethernet).has("MAC_Address")) return;
  const std::string address = dashedAddress(Item(*ethernet).text("MAC_Address"));
  adapter.setAttribute("manuf-by-mac", TagValue(address.substr(0, kManufacturer)));
  adapter.setAttribute("mac-address", TagValue(address));
}

}  // namespace

void PostProcessNetwork(kevaDoc& snapshot, const kevaDoc& raw) {
  Entries adapters(snapshot, {"Network", "Adapters"}, "net-adapter:");
  for (const Item& item : items(raw, "SPNetworkDataType")) {
    Tag& adapter = adapters.add(item.value("_name"));
    write(kAdapter, item, adapter);
    writeJoined("ip-address", item.child("ip_address"), adapter);
    writeJoined("ip-subnet", item.child("SubnetMasks"), adapter);
    writeHardwareAddress(item.child("Ethernet"), adapter);
    if (const Tag* ipv4 = item.child("IPv4")) {
      copyPresent(Item(*ipv4), "Router", adapter, "default-gateway");
    }
  }
}
