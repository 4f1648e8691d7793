#include "postprocess/printers.h"

#include "postprocess/mapping.h"

namespace {

constexpr Row kPrinter[] = {
    {"is-default", {"default"}, zeroIf("no")},
    {"status",     {"status"},  copied      },
};
constexpr Row kMultiFunction[] = {
    {"scanner-uuid",     {"scannerUUID"},                            copied},
    {"scanner-app-path", {"scannerapppath", "scannerappbundlepath"}, copied},
};
constexpr Row kDriver[] = {
    {"is-fax",           {"fax"},            zeroIf("no")},
    {"driver-version",   {"driverversion"},  copied      },
    {"print-server",     {"printserver"},    copied      },
    {"uri",              {"uri"},            copied      },
    {"ppd",              {"ppd"},            copied      },
    {"ppd-file-version", {"ppdfileversion"}, copied      },
};
constexpr Row kScanner[] = {
    {"scanner-uuid",        {"scannerUUID"},       copied},
    {"scanner-app-path",    {"scannerapppath"},    copied},
    {"scanner-app-version", {"scannerappversion"}, copied},
};

}  // namespace

void PostProcessPrinters(kevaDoc& snapshot, const kevaDoc& raw) {
  Entries printers(snapshot, {"Peripherals", "Printers"}, "Printer:");
  Entries scanners(snapshot, {"Peripherals", "Scanners"}, "Scanner:");
  for (const Item& item : items(raw, "SPPrintersDataType")) {
    if (item.has("default")) {
      Tag& printer = printers.add(item.value("_name"));
      write(kPrinter, item, printer);
      if (item.has("scanner") && item.text("scanner") != "no") {  // alone it must say "yes"
        printer.addProperty("kind", "MFP");
        write(kMultiFunction, item, printer);
      }
      write(kDriver, item, printer);
    } else if (item.text("scanner") == "yes") {
      write(kScanner, item, scanners.add(item.value("_name")));
    }
  }
}
