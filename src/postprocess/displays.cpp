#include "postprocess/displays.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/formatString.h"
#include "base/quantities.h"
#include "postprocess/edid.h"
#include "postprocess/mapping.h"

namespace {

constexpr Row kAdapter[] = {
    {"model",        {"sppci_model", "_name"},                      copied},
    {"vendor",       {"spdisplays_vendor", "spdisplays_vendor-id"}, copied},
    {"device-id",    {"spdisplays_device-id"},                      copied},
    {"revision-id",  {"spdisplays_revision-id"},                    copied},
    {"rom-revision", {"spdisplays_rom-revision"},                   copied},
    {"bus",          {"sppci_bus"},                                 copied},
    {"pcie-width",   {"spdisplays_pcie_width"},                     copied},
    {"cores",        {"sppci_cores"},                               copied},
};
constexpr Row kMain[] = {
    {"main", {"spdisplays_main"}, orAbsent(oneIf("spdisplays_yes"))},
};
constexpr Row kPicture[] = {
    {"resolution", {"_spdisplays_resolution", "spdisplays_resolution"}, copied},
    {"pixels",     {"_spdisplays_pixels"},                              copied},
};

// --- texts

std::string_view withoutPrefix(std::string_view hexadecimal) {
  const bool hasPrefix = hexadecimal.starts_with("0x") || hexadecimal.starts_with("0X");
  return hexadecimal.substr(hasPrefix ? 2 : 0);
}

// The number that the whole text is; empty when it is none, or beyond the type.
template <typename Unsigned>
std::optional<Unsigned> numberIn(std::string_view text, int base) {
  Unsigned number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

// The bytes of a hexadecimal text; none when it is anything else.
std::vector<std::uint8_t> bytesIn(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  if (text.size() % 2 != 0) return bytes;
  for (text = withoutPrefix(text); !text.empty(); text.remove_prefix(2)) {
    const auto byte = numberIn<std::uint8_t>(text.substr(0, 2), 16);
    if (!byte) return {};
    bytes.push_back(*byte);
  }
  return bytes;
}

// "16:9". The name of a usual ratio when the picture is that one but for a small part of it, else
// the picture's own ratio.
std::string aspectRatio(unsigned width, unsigned height, double tolerance) {
  struct Ratio {
    const char* name;
    double width;
    double height;
  };
  constexpr Ratio kUsual[] = {
      {"16:9",  16, 9 },
      {"16:10", 16, 10},
      {"4:3",   4,  3 },
      {"5:4",   5,  4 },
      {"21:9",  21, 9 },
      {"21:9",  64, 27}, // what is sold under that name
      {"3:2",   3,  2 },
  };
  for (const Ratio& ratio : kUsual) {
    if (std::abs(width * ratio.height / (height * ratio.width) - 1) <= tolerance) return ratio.name;
  }
  const unsigned common = std::gcd(width, height);
  return formatString("%u:%u", width / common, height / common);
}

// --- writing; what is not stated ("", 0) is not written

void writeText(Tag& tag, const char* name, const std::string& text, const char* units = nullptr) {
  if (!text.empty()) {
    tag.setAttribute(name, TagValue(text), units == nullptr ? nullptr : "units", units);
  }
}

void writeNumber(Tag& tag, const char* name, unsigned number, const char* units) {
  if (number != 0) tag.setAttribute(name, TagValue(std::int64_t{number}), "units", units);
}

void writeImage(const Edid& edid, Tag& tag) {
  constexpr double kMillimetresPerInch = 25.4;
  std::string ratio;
  std::string diagonal;
  if (edid.width != 0) {
    writeNumber(tag, "image-width", (edid.width + 5) / 10, "cm");
    writeNumber(tag, "image-height", (edid.height + 5) / 10, "cm");
    diagonal = formatString("%.1f", std::hypot(edid.width, edid.height) / kMillimetresPerInch);
    ratio = aspectRatio(edid.width, edid.height, 0.03);
  }
  if (edid.hasPreferred) {
    ratio = aspectRatio(edid.modes.front().width, edid.modes.front().height, 0.01);
  }
  writeText(tag, "diagonal", diagonal, "in");
  writeText(tag, "aspect-ratio", ratio);
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

void writeEdid(const Edid& edid, Tag& tag) {
  const std::string product = formatString("%04x", edid.product);
  const bool hasMaker = !edid.manufacturer.empty();
  writeText(tag, "model",
            edid.name.empty() && hasMaker ? edid.manufacturer + " " + product : edid.name);
  writeText(tag, "serial", edid.serial);
  writeText(tag, "manuf", edid.manufacturer);
  writeText(tag, "product-id", product);
  writeText(tag, "manuf-date", edid.date);
  writeText(tag, "edid-version", formatString("%u.%u", edid.version, edid.revision));
  writeText(tag, "input", edid.digital ? "digital" : "analog");
  writeImage(edid, tag);
  writeNumber(tag, "vert-freq-min", edid.vertical.min, "Hz");
  writeNumber(tag, "vert-freq-max", edid.vertical.max, "Hz");
  writeNumber(tag, "hor-freq-min", edid.horizontal.min, "kHz");
  writeNumber(tag, "hor-freq-max", edid.horizontal.max, "kHz");
  writeNumber(tag, "max-pixel-clock", edid.maxPixelClock, "MHz");
  writeModes(edid, tag);
}

// What the platform itself read from a block that it does not show: identifiers in hexadecimal, the
// date in decimal.
void writePlatformFacts(const Item& item, Tag& tag) {
  const auto identifier = [&](std::string_view key) {
    return numberIn<std::uint32_t>(withoutPrefix(item.text(key)), 16).value_or(0);
  };
  const auto count = [&](std::string_view key) {
    return numberIn<std::uint32_t>(item.text(key), 10).value_or(0);
  };
  writeText(tag, "serial", serialNumber(identifier("_spdisplays_display-serial-number")));
  writeText(tag, "manuf", manufacturerName(identifier("_spdisplays_display-vendor-id")));
  writeText(tag, "manuf-date",
            manufactureDate(count("_spdisplays_display-week"), count("_spdisplays_display-year")));
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

void writeMonitor(const Item& item, Tag& tag) {
  const bool builtIn = item.text("spdisplays_builtin") == "spdisplays_yes" ||
                       item.text("spdisplays_connection_type") == "spdisplays_internal";
  write(kMain, item, tag);
  tag.setAttribute("built-in", TagValue(builtIn ? "1" : "0"));
  write(kPicture, item, tag);
  if (const auto edid = decodeEdid(bytesIn(item.text("_spdisplays_edid")))) {
    writeEdid(*edid, tag);
  } else {
    writePlatformFacts(item, tag);
  }
}

}  // namespace

void PostProcessDisplays(kevaDoc& snapshot, const kevaDoc& raw) {
  Entries adapters(snapshot, {"Video", "Adapters"}, "video-adapter:");
  Entries monitors(snapshot, {"Video", "Monitors"}, "Monitor:");
  for (const Item& item : items(raw, "SPDisplaysDataType")) {
    writeAdapter(item, adapters.add(item.value(item.has("sppci_model") ? "sppci_model" : "_name")));
    for (const Item& monitor : nestedItems(item, "spdisplays_ndrvs")) {
      // Systems up to 10.8 also list the connectors that nothing is plugged into.
      if (monitor.text("spdisplays_status") == "spdisplays_not_connected") continue;
      writeMonitor(monitor, monitors.add(monitor.value("_name")));
    }
  }
}
