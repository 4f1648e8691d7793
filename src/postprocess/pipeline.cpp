#include "postprocess/pipeline.h"

#include <variant>

#include "base/console.h"
#include "postprocess/applications.h"
#include "postprocess/computerSystem.h"
#include "postprocess/disks.h"
#include "postprocess/displays.h"
#include "postprocess/environment.h"
#include "postprocess/firewall.h"
#include "postprocess/libraries.h"
#include "postprocess/memory.h"
#include "postprocess/network.h"
#include "postprocess/operatingSystem.h"
#include "postprocess/printers.h"
#include "postprocess/processList.h"
#include "postprocess/processors.h"
#include "postprocess/usb.h"
#include "postprocess/userAccounts.h"

namespace {

// What a step may touch shows in its signature.
using FromRaw = void (*)(kevaDoc& snapshot, const kevaDoc& raw);
using FromHost = void (*)(kevaDoc& snapshot, platform::Host& host);
using FromBoth = void (*)(kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host);
using Step = std::variant<FromRaw, FromHost, FromBoth>;

constexpr Step kSteps[] = {
    PostProcessComputerSystem,   // 1
    PostProcessProcessors,       // 2
    PostProcessMemory,           // 3
    PostProcessDisplays,         // 4
    PostProcessDisks,            // 5
    PostProcessNetwork,          // 6
    PostProcessPrinters,         // 7
    PostProcessUsb,              // 8
    PostProcessOperatingSystem,  // 9
    PostProcessUserAccounts,     // 10
    PostProcessApplications,     // 11
    PostProcessLibraries,        // 12
    PostProcessProcesses,        // 13
    PostProcessEnvironment,      // 14
    PostProcessFirewall,         // 15
};

void run(const Step& step, kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host) {
  if (const auto* fromRaw = std::get_if<FromRaw>(&step)) {
    (*fromRaw)(snapshot, raw);
  } else if (const auto* fromHost = std::get_if<FromHost>(&step)) {
    (*fromHost)(snapshot, host);
  } else {
    std::get<FromBoth>(step)(snapshot, raw, host);
  }
}

}  // namespace

void PostProcess(kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host, bool verbose) {
  if (verbose) printProgress("IV. PostProcess>>>\n");
  int number = 0;
  for (const Step& step : kSteps) {
    ++number;
    if (verbose) printProgress("%d...", number);
    run(step, snapshot, raw, host);
    if (verbose) printProgress("done\n");
  }
  if (verbose) printText("IV. PostProcess End.\n");
}
