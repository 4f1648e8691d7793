#include "postprocess/displays.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "base/digits.h"
#include "base/formatString.h"
#include "base/quantities.h"
#include "base/text.h"
#include "edid/edid.h"
#include "postprocess/aspectRatio.h"
#include "postprocess/mapping.h"

namespace {

// The profiler prints a key of its own table of texts where it lacks the text, in letters of either
// case. What is not here stays as it is, as do words ("Apple (0x106b)").
TagValue inWords(const TagValue& source, const char*) {
  struct Word {
    std::string_view token;  // in lower case
    const char* word;
  };
  constexpr Word kWords[] = {
      {"sppci_vendor_amd",       "AMD"        },
      {"sppci_vendor_apple",     "Apple"      },
      {"sppci_vendor_ati",       "ATI"        },
      {"sppci_vendor_intel",     "Intel"      },
      {"sppci_vendor_nvidia",    "NVIDIA"     },
      {"spdisplays_agp_device",  "AGP"        },
      {"spdisplays_builtin",     "Built-in"   },
      {"sppci_pci_device",       "PCI"        },
      {"spdisplays_pcie_device", "PCIe"       },
      {"spdisplays_tb_device",   "Thunderbolt"},
  };
  const std::string token = toLower(textOf(source));
  const auto* const found = std::ranges::find(kWords, token, &Word::token);
  return found == std::end(kWords) ? source : TagValue(found->word);
}

constexpr Row kAdapter[] = {
    {"model",        {"sppci_model", "_name"},                      copied   },
    {"vendor",       {"spdisplays_vendor", "spdisplays_vendor-id"}, {inWords}},
    {"device-id",    {"spdisplays_device-id"},                      copied   },
    {"revision-id",  {"spdisplays_revision-id"},                    copied   },
    {"rom-revision", {"spdisplays_rom-revision"},                   copied   },
    {"bus",          {"sppci_bus"},                                 {inWords}},
    {"pcie-width",   {"spdisplays_pcie_width"},                     copied   },
    {"cores",        {"sppci_cores"},                               copied   },
};
constexpr Row kMain[] = {
    {"main", {"spdisplays_main"}, orAbsent(oneIf("spdisplays_yes"))},
};
constexpr Row kPicture[] = {
    {"resolution", {"_spdisplays_resolution", "spdisplays_resolution"}, copied},
    {"pixels",     {"_spdisplays_pixels"},                              copied},
};

// What is not stated ("", 0) is not written.
TagValue stated(const std::string& text) {
  return text.empty() ? TagValue() : TagValue(text);
}

TagValue stated(unsigned number) {
  return number == 0 ? TagValue() : TagValue(std::int64_t{number});
}

void writeImage(const Edid& edid, Tag& tag) {
  constexpr double kMillimetresPerInch = 25.4;
  std::string ratio;
  std::string diagonal;
  if (edid.width != 0) {
    setPresent(tag, "image-width", stated(edid.width / 10), "cm");
    setPresent(tag, "image-height", stated(edid.height / 10), "cm");
    diagonal = formatString("%.1f", std::hypot(edid.width, edid.height) / kMillimetresPerInch);
    ratio = aspectRatio(edid.width, edid.height, 0.03);
  }
  if (edid.hasPreferred) {
    ratio = aspectRatio(edid.modes.front().width, edid.modes.front().height, 0.01);
  }
  setPresent(tag, "diagonal", stated(diagonal), "in");
  setPresent(tag, "aspect-ratio", stated(ratio));
}

void writeModes(const Edid& edid, Tag& monitor) {
  unsigned count = 0;
  for (const VideoMode& mode : edid.modes) {
    Tag& tag = *monitor.child("Modes")->child(formatString("mode:%u", ++count));
    tag.setValue(
        TagValue(formatString("%ux%u@%lld", mode.width, mode.height, std::llround(mode.rate))));
    tag.setAttribute("width", TagValue(std::int64_t{mode.width}));
    tag.setAttribute("height", TagValue(std::int64_t{mode.height}));
    const std::int64_t rate = hundredths(mode);
    tag.setAttribute("frequency",
                     TagValue(formatString("%lld.%02lld", static_cast<long long>(rate / 100),
                                           static_cast<long long>(rate % 100))));
    if (edid.hasPreferred && count == 1) tag.setAttribute("preferred", TagValue("1"));
    if (mode.interlaced) tag.setAttribute("interlaced", TagValue("1"));
  }
}

// What tells one monitor from others, from either source.
struct Identity {
  std::string model;
  std::string serial;
  std::string manufacturer;
  std::string product;
  std::string date;
};

void writeIdentity(const Identity& identity, Tag& tag) {
  setPresent(tag, "model", stated(identity.model));
  setPresent(tag, "serial", stated(identity.serial));
  setPresent(tag, "manuf", stated(identity.manufacturer));
  setPresent(tag, "product-id", stated(identity.product));
  setPresent(tag, "manuf-date", stated(identity.date));
}

std::string productText(std::uint32_t product) {
  return formatString("%04x", product);
}

void writeEdid(const Edid& edid, Tag& tag) {
  const std::string product = productText(edid.product);
  const bool hasMaker = !edid.manufacturer.empty();
  const std::string standIn = hasMaker ? edid.manufacturer + " " + product : "";
  writeIdentity(
      {edid.name.empty() ? standIn : edid.name, edid.serial, edid.manufacturer, product, edid.date},
      tag);
  tag.setAttribute("edid-version", TagValue(formatString("%u.%u", edid.version, edid.revision)));
  tag.setAttribute("input", TagValue(edid.digital ? "digital" : "analog"));
  writeImage(edid, tag);
  setPresent(tag, "vert-freq-min", stated(edid.vertical.min), "Hz");
  setPresent(tag, "vert-freq-max", stated(edid.vertical.max), "Hz");
  setPresent(tag, "hor-freq-min", stated(edid.horizontal.min), "kHz");
  setPresent(tag, "hor-freq-max", stated(edid.horizontal.max), "kHz");
  setPresent(tag, "max-pixel-clock", stated(edid.maxPixelClock), "MHz");
  writeModes(edid, tag);
}

// What the platform itself read from a block that it does not show: identifiers in hexadecimal, the
// date in decimal. A virtual display has identifiers of 32 bits, which name no product.
void writePlatformFacts(const Item& item, Tag& tag) {
  constexpr std::uint32_t kLastProduct = 0xFFFF;
  const auto identifier = [&](std::string_view key) {
    return hexadecimalNumber(item.text(key)).value_or(0);
  };
  const auto count = [&](std::string_view key) {
    return decimalNumber(item.text(key)).value_or(0);
  };
  const auto product = hexadecimalNumber(item.text("_spdisplays_display-product-id"));
  writeIdentity(
      {item.text("_name"), serialNumber(identifier("_spdisplays_display-serial-number")),
       manufacturerName(identifier("_spdisplays_display-vendor-id")),
       product && *product <= kLastProduct ? productText(*product) : "",
       manufactureDate(count("_spdisplays_display-week"), count("_spdisplays_display-year"))},
      tag);
}

void writeAdapter(const Item& item, Tag& tag) {
  write(kAdapter, item, tag);
  const char* const key =
      item.has("spdisplays_vram") ? "spdisplays_vram" : "spdisplays_vram_shared";
  const double memory = quantity(SizeToMB, item, key);
  if (!(memory > 0)) return;
  tag.setAttribute("memory", TagValue(truncateToInteger(memory)), "base-value",
                   bytesText(SizeToBytes(item.text(key))).c_str());
}

// Systems up to 10.8 also list the connectors that nothing is plugged into.
bool isThere(const Item& monitor) {
  return monitor.text("spdisplays_status") != "spdisplays_not_connected";
}

// Whether the picture goes to another device than a monitor. A tablet that is used as one (Sidecar)
// has both keys, a display that is reached by AirPlay may have the second alone.
bool isVirtual(const Item& monitor) {
  return monitor.text("spdisplays_virtualdevice") == "spdisplays_yes" ||
         monitor.text("spdisplays_connection_type") == "spdisplays_airplay";
}

void writeMonitor(const Item& item, Tag& tag) {
  const bool builtIn = item.text("spdisplays_builtin") == "spdisplays_yes" ||
                       item.text("spdisplays_connection_type") == "spdisplays_internal";
  write(kMain, item, tag);
  tag.setAttribute("built-in", TagValue(builtIn ? "1" : "0"));
  if (isVirtual(item)) tag.setAttribute("virtual", TagValue("1"));
  write(kPicture, item, tag);
  if (const auto edid = decodeEdid(hexadecimalBytes(item.text("_spdisplays_edid")))) {
    writeEdid(*edid, tag);
  } else {
    writePlatformFacts(item, tag);
  }
}

}  // namespace

void PostProcessDisplays(kevaDoc& snapshot, const kevaDoc& raw) {
  Entries adapters(snapshot, {"Video", "Adapters"}, "video-adapter:");
  Entries monitors(snapshot, {"Video", "Monitors"}, "Monitor:");
  std::vector<Item> connected;
  for (const Item& item : items(raw, "SPDisplaysDataType")) {
    writeAdapter(item, adapters.add(item.value(item.has("sppci_model") ? "sppci_model" : "_name")));
    std::ranges::copy_if(nestedItems(item, "spdisplays_ndrvs"), std::back_inserter(connected),
                         isThere);
  }
  std::stable_partition(connected.begin(), connected.end(), std::not_fn(isVirtual));
  for (const Item& monitor : connected) writeMonitor(monitor, monitors.add(monitor.value("_name")));
}
