#include <utility>

#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kTable = tableAt("printers");

constexpr Line kPrinterLines[] = {
    {"default",        {"default"},        flag},
    {"status",         {"status"},         text},
    {"fax",            {"fax"},            flag},
    {"uri",            {"uri"},            text},
    {"driver_version", {"driverversion"},  text},
    {"ppd",            {"ppd"},            text},
    {"ppd_version",    {"ppdfileversion"}, text},
    {"print_server",   {"printserver"},    text},
};
constexpr auto kPrinter = cells("printers", kPrinterLines);
constexpr Line kScannerLines[] = {
    {"scanner_uuid", {"scannerUUID"},                            text},
    {"scanner_app",  {"scannerapppath", "scannerappbundlepath"}, text},
};
constexpr auto kScanner = cells("printers", kScannerLines);

}  // namespace

void readProfiledPrinters(const Profile& profile, Description& machine) {
  TableData& table = machine[kTable];
  table.recorded = profile.has("SPPrintersDataType");
  profile.forEach("SPPrintersDataType", [&](const PropertyList& item) {
    // What prints says whether it is the default; it scans, too, when it says anything but no.
    const bool prints = item.find("default") != nullptr;
    const std::string_view scanner = textIn(item, "scanner");
    const bool scans = scanner == "yes" || (prints && !scanner.empty() && scanner != "no");
    if (!prints && !scans) return;  // "there are no printers" is an item as well
    Row row = emptyRow(kTable);
    row[columnAt("printers", "kind")] = prints ? (scans ? "multifunction" : "printer") : "scanner";
    if (const PropertyList* name = item.find("_name"))
      row[columnAt("printers", "name")] = text(*name);
    if (prints) write(kPrinter, item, row);
    if (scans) write(kScanner, item, row);
    table.rows.push_back(std::move(row));
  });
}

}  // namespace machine::profiler
