#include "collect/profiler.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "base/console.h"
#include "base/formatString.h"
#include "collect/commandRunner.h"

using platform::PropertyList;

namespace {

// The wrapper that the profiler puts around its dictionaries, byte for byte.
constexpr std::string_view kProlog =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<array>\n";
constexpr std::string_view kEpilogue = "</array>\n</plist>\n";
static_assert(kProlog.size() == 172 && kEpilogue.size() == 18);

constexpr std::int32_t kChunkSize = 65536;  // bytes

// What of a data type's output is taken for the wrapper, in bytes.
struct Cut {
  std::size_t front;
  std::size_t back;
};

constexpr Cut cutFor(PieceMode mode) {
  switch (mode) {
    case PieceMode::First:
      return {0, kEpilogue.size()};
    case PieceMode::Middle:
      return {kProlog.size(), kEpilogue.size()};
    case PieceMode::Last:
      break;
  }
  return {kProlog.size(), 0};
}

struct Step {
  const char* dataTypes[2];  // the second one may be null
  PieceMode mode;
  int percent;  // printed after the step; 0 prints nothing
};

constexpr Step kSteps[] = {
    {{"SPHardwareDataType", nullptr},                   PieceMode::First,  0  },
    {{"SPNetworkDataType", nullptr},                    PieceMode::Middle, 10 },
    {{"SPSoftwareDataType", nullptr},                   PieceMode::Middle, 0  },
    {{"SPParallelATADataType", nullptr},                PieceMode::Middle, 20 },
    {{"SPAudioDataType", nullptr},                      PieceMode::Middle, 0  },
    {{"SPBluetoothDataType", nullptr},                  PieceMode::Middle, 30 },
    {{"SPFireWireDataType", nullptr},                   PieceMode::Middle, 0  },
    {{"SPDisplaysDataType", nullptr},                   PieceMode::Middle, 40 },
    {{"SPMemoryDataType", nullptr},                     PieceMode::Middle, 0  },
    {{"SPPrintersDataType", nullptr},                   PieceMode::Middle, 50 },
    {{"SPSerialATADataType", "SPParallelSCSIDataType"}, PieceMode::Middle, 0  },
    {{"SPUSBDataType", nullptr},                        PieceMode::Middle, 60 },
    {{"SPAirPortDataType", nullptr},                    PieceMode::Middle, 0  },
    {{"SPFirewallDataType", nullptr},                   PieceMode::Middle, 70 },
    {{"SPNetworkLocationDataType", nullptr},            PieceMode::Middle, 0  },
    {{"SPNetworkVolumeDataType", nullptr},              PieceMode::Middle, 80 },
    {{"SPApplicationsDataType", nullptr},               PieceMode::Middle, 0  },
    {{"SPStartupItemDataType", nullptr},                PieceMode::Middle, 90 },
    {{"SPDiscBurningDataType", nullptr},                PieceMode::Middle, 0  },
    {{"SPStorageDataType", nullptr},                    PieceMode::Middle, 0  },
    {{"SPNVMeDataType", nullptr},                       PieceMode::Middle, 0  },
    {{"SPPowerDataType", nullptr},                      PieceMode::Last,   100},
};

void addDictionaries(platform::Host& host, std::string document, PropertyList::Array& profile) {
  std::optional<PropertyList> list = host.parsePropertyList(std::move(document));
  if (!list || list->array() == nullptr) return;
  std::ranges::move(*list->array(), std::back_inserter(profile));
}

}  // namespace

std::string profileDataType(platform::Host& host, const std::string& dataType, PieceMode mode,
                            std::uint32_t& length) {
  std::string document = runCommandUntilItPrints(
      host, formatString("system_profiler -detailLevel full -xml %s", dataType.c_str()),
      kChunkSize);
  const auto [front, back] = cutFor(mode);
  length = 0;
  if (document.size() <= front + back) return "";
  length = static_cast<std::uint32_t>(document.size() - front - back);
  document.replace(0, front, kProlog.substr(0, front));
  document.replace(document.size() - back, back, kEpilogue.substr(0, back));
  return document;
}

PropertyList collectProfile(platform::Host& host, bool progress) {
  PropertyList::Array profile;
  for (const Step& step : kSteps) {
    for (const char* dataType : step.dataTypes) {
      if (dataType == nullptr) continue;
      std::uint32_t length = 0;
      std::string document = profileDataType(host, dataType, step.mode, length);
      if (length > 0) addDictionaries(host, std::move(document), profile);
    }
    if (progress && step.percent > 0) printText("%d%%\n", step.percent);
  }
  return PropertyList(std::move(profile));
}

std::string collectRawProfile(platform::Host& host) {
  return runCommandUntilItPrints(host, "system_profiler -detailLevel full -xml", kChunkSize);
}
