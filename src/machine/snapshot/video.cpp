#include "machine/cleanText.h"
#include "machine/picture.h"
#include "machine/snapshot/item.h"
#include "machine/snapshot/sections.h"

namespace machine::snapshot {

namespace {

constexpr std::size_t kVideoTable = tableAt("video");
constexpr std::size_t kDisplaysTable = tableAt("displays");

constexpr Line kAdapterLines[] = {
    {"model",        {"model"},        text },
    {"vendor",       {"vendor"},       word },
    {"device_id",    {"device-id"},    text },
    {"revision_id",  {"revision-id"},  text },
    {"rom_revision", {"rom-revision"}, text },
    {"bus",          {"bus"},          word },
    {"pcie_width",   {"pcie-width"},   text },
    {"cores",        {"cores"},        count},
    {"memory_mb",    {"memory"},       count},
};
constexpr auto kAdapter = cells("video", kAdapterLines);
constexpr Line kMonitorLines[] = {
    {"serial",       {"serial"},     text},
    {"model",        {"model"},      text},
    {"manufacturer", {"manuf"},      text},
    {"product_id",   {"product-id"}, text},
    {"made_on",      {"manuf-date"}, text},
    {"main",         {"main"},       flag},
    {"built_in",     {"built-in"},   flag},
    {"virtual",      {"virtual"},    flag},
    {"diagonal_in",  {"diagonal"},   real},
};
constexpr auto kMonitor = cells("displays", kMonitorLines);

void readMonitor(const TagView& monitor, Row& row) {
  row[columnAt("displays", "virtual")] = false;  // left out of all others
  write(kMonitor, monitor, row);
  row[columnAt("displays", "name")] = word(monitor.value());
  // Without an EDID block the model is the name once more.
  if (!monitor.attribute("edid-version")) row[columnAt("displays", "model")] = Value();
  // Every built-in panel of Apple silicon says the same, FD626D62h; older files have it.
  Value& serial = row[columnAt("displays", "serial")];
  if (textOf(serial) == "4251086178") serial = {};
  const std::string_view shown = monitor.attribute("resolution").value_or("");
  const auto driven = pictureSize(monitor.attribute("pixels").value_or(shown));
  if (driven) {
    row[columnAt("displays", "width_px")] = driven->width;
    row[columnAt("displays", "height_px")] = driven->height;
  }
  if (const auto rate = refreshRate(shown)) row[columnAt("displays", "refresh_hz")] = *rate;
}

}  // namespace

void readVideo(const TagView& top, Description& machine) {
  TableData& video = machine[kVideoTable];
  if (const auto adapters = find(top, {"Video", "Adapters"})) {
    video.recorded = true;
    forEach(*adapters, "video-adapter:", [&video](const TagView& adapter) {
      write(kAdapter, adapter, addRow(video, kVideoTable));
    });
  }
  const auto monitors = find(top, {"Video", "Monitors"});
  if (!monitors) return;
  TableData& displays = machine[kDisplaysTable];
  displays.recorded = true;
  forEach(*monitors, "Monitor:", [&](const TagView& monitor) {
    Row& row = addRow(displays, kDisplaysTable);
    readMonitor(monitor, row);
    // Which one of several drives it is not told.
    if (video.rows.size() == 1) {
      row[columnAt("displays", "adapter")] = video.rows.front()[columnAt("video", "model")];
    }
  });
}

}  // namespace machine::snapshot
