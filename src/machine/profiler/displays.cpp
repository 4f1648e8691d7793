#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/formatString.h"
#include "edid/edid.h"
#include "machine/cleanText.h"
#include "machine/picture.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kVideo = tableAt("video");
constexpr std::size_t kDisplays = tableAt("displays");

constexpr std::size_t at(std::string_view column) {
  return columnAt("displays", column);
}

constexpr Line kAdapterLines[] = {
    {"model",        {"sppci_model", "_name"},                                         text     },
    {"vendor",       {"spdisplays_vendor", "spdisplays_vendor-id"},                    word     },
    {"device_id",    {"spdisplays_device-id"},                                         text     },
    {"revision_id",  {"spdisplays_revision-id"},                                       text     },
    {"rom_revision", {"spdisplays_rom-revision"},                                      text     },
    {"bus",          {"sppci_bus"},                                                    word     },
    {"pcie_width",   {"spdisplays_pcie_width"},                                        text     },
    {"cores",        {"sppci_cores"},                                                  integer  },
    {"memory_mb",    {"spdisplays_vram", "spdisplays_vram_shared"},                    megabytes},
    {"metal",
     {"spdisplays_mtlgpufamilysupport", "spdisplays_metalfamily", "spdisplays_metal"},
     word                                                                                       },
};
constexpr auto kAdapter = cells("video", kAdapterLines);

constexpr Line kDisplayLines[] = {
    {"name",       {"_name"},                            word  },
    {"serial",     {"spdisplays_display-serial-number"}, stated},
    {"main",       {"spdisplays_main"},                  flag  },
    {"virtual",    {"spdisplays_virtualdevice"},         flag  },
    {"connection", {"spdisplays_connection_type"},       word  },
};
constexpr auto kDisplay = cells("displays", kDisplayLines);

// The number that the whole text is, in hexadecimal with or without "0x"; 0 when it is none.
std::uint32_t hexadecimal(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number, 16);
  return error == std::errc() && rest == end ? number : 0;
}

std::vector<std::uint8_t> bytesIn(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  if (text.size() % 2 != 0) return bytes;
  for (; !text.empty(); text.remove_prefix(2)) {
    std::uint8_t byte = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + 2, byte, 16);
    if (error != std::errc() || rest != text.data() + 2) return {};
    bytes.push_back(byte);
  }
  return bytes;
}

void writePicture(const PropertyList& item, Row& row) {
  for (const char* key :
       {"_spdisplays_pixels", "_spdisplays_resolution", "spdisplays_resolution"}) {
    const std::optional<PictureSize> size = pictureSize(textIn(item, key));
    if (!size) continue;
    row[at("width_px")] = size->width;
    row[at("height_px")] = size->height;
    break;
  }
  for (const char* key : {"_spdisplays_resolution", "spdisplays_resolution"}) {
    const std::optional<double> rate = refreshRate(textIn(item, key));
    if (!rate) continue;
    row[at("refresh_hz")] = *rate;
    break;
  }
}

void set(Row& row, std::size_t column, std::string_view text) {
  if (!text.empty()) row[column] = textValue(text);
}

// What the display says about itself.
void writeEdid(const Edid& edid, Row& row) {
  const std::string product = formatString("%04x", edid.product);
  const bool named = !edid.name.empty() || edid.manufacturer.empty();
  set(row, at("model"), named ? edid.name : edid.manufacturer + " " + product);
  set(row, at("serial"), edid.serial);
  set(row, at("manufacturer"), edid.manufacturer);
  set(row, at("product_id"), product);
  set(row, at("made_on"), edid.date);
  if (edid.width == 0) return;
  // Rounded as a text is, so that both kinds of files say the same.
  constexpr double kMillimetresPerInch = 25.4;
  const double inches = std::hypot(edid.width, edid.height) / kMillimetresPerInch;
  row[at("diagonal_in")] = std::strtod(formatString("%.1f", inches).c_str(), nullptr);
}

// The same from what the system read, where it does not show what it read it from.
void writeSystemFacts(const PropertyList& item, Row& row) {
  const auto count = [&](std::string_view key) {
    const std::int64_t number = integerIn(item, key).value_or(0);
    return number < 0 || number > 9999 ? 0U : static_cast<std::uint32_t>(number);
  };
  const std::uint32_t serial = hexadecimal(textIn(item, "_spdisplays_display-serial-number"));
  const std::uint32_t product = hexadecimal(textIn(item, "_spdisplays_display-product-id"));
  if (!isKnown(row[at("serial")])) set(row, at("serial"), serialNumber(serial));
  set(row, at("manufacturer"),
      manufacturerName(hexadecimal(textIn(item, "_spdisplays_display-vendor-id"))));
  if (product != 0 && product <= 0xFFFF) set(row, at("product_id"), formatString("%04x", product));
  set(row, at("made_on"),
      manufactureDate(count("_spdisplays_display-week"), count("_spdisplays_display-year")));
}

Row displayRow(const PropertyList& item, const Value& adapter) {
  Row row = emptyRow(kDisplays);
  row[at("adapter")] = adapter;
  row[at("main")] = false;  // only the one that is says so, as with the others
  row[at("virtual")] = textIn(item, "spdisplays_connection_type") == "spdisplays_airplay";
  write(kDisplay, item, row);
  row[at("built_in")] = flagIn(item, "spdisplays_builtin") == true ||
                        textIn(item, "spdisplays_connection_type") == "spdisplays_internal";
  writePicture(item, row);
  if (const auto edid = decodeEdid(bytesIn(textIn(item, "_spdisplays_edid")))) {
    writeEdid(*edid, row);
  } else {
    writeSystemFacts(item, row);
  }
  return row;
}

}  // namespace

void readProfiledDisplays(const Profile& profile, Description& machine) {
  TableData& video = machine[kVideo];
  TableData& displays = machine[kDisplays];
  video.recorded = displays.recorded = profile.has("SPDisplaysDataType");
  profile.forEach("SPDisplaysDataType", [&](const PropertyList& item) {
    Row adapter = emptyRow(kVideo);
    write(kAdapter, item, adapter);
    const Value model = adapter[columnAt("video", "model")];
    video.rows.push_back(std::move(adapter));
    for (const PropertyList& display : listIn(item, "spdisplays_ndrvs")) {
      // Systems up to 10.8 also list the connectors that nothing is plugged into.
      if (textIn(display, "spdisplays_status") == "spdisplays_not_connected") continue;
      displays.rows.push_back(displayRow(display, model));
    }
  });
}

}  // namespace machine::profiler
