#include "postprocess/processors.h"

#include <algorithm>
#include <cstdlib>
#include <span>

#include "base/formatString.h"
#include "base/quantities.h"
#include "base/text.h"
#include "postprocess/mapping.h"

namespace {

enum class Scope { Machine, Core, Package };  // what the stated cache size is the size of

struct Cache {
  const char* key;
  Scope scope;
};

constexpr Cache kL2[] = {
    {"l2_cache",       Scope::Machine},
    {"l2_cache_core",  Scope::Core   },
    {"l2_cache_size",  Scope::Core   },
    {"l2_cache_share", Scope::Package},
};
constexpr Cache kL3[] = {
    {"l3_cache",      Scope::Machine},
    {"l3_cache_core", Scope::Core   },
    {"l3_cache_size", Scope::Core   },
};

struct Counts {
  std::int64_t packages;
  std::int64_t cores;  // of the whole machine
};

std::int64_t coreCount(const Item& hardware) {
  for (const char* key : {"number_processors", "number_cpus"}) {
    if (hardware.has(key)) return hardware.integer(key);
  }
  return 1;
}

std::int64_t perPackage(double kilobytes, Scope scope, const Counts& counts) {
  const auto cores = static_cast<double>(counts.cores);
  const auto packages = static_cast<double>(counts.packages);
  switch (scope) {
    case Scope::Machine:
      return truncateToInteger(kilobytes) / counts.packages;
    case Scope::Core:
      return truncateToInteger(kilobytes * cores / packages);
    case Scope::Package:
      break;
  }
  return truncateToInteger(kilobytes);
}

void writeCache(const char* attribute, std::span<const Cache> caches, const Item& hardware,
                const Counts& counts, Tag& processor) {
  for (const Cache& cache : caches) {
    if (!hardware.has(cache.key)) continue;
    const double kilobytes = strictQuantity(ParseSizeKB, hardware, cache.key);
    processor.setAttribute(attribute, TagValue(perPackage(kilobytes, cache.scope, counts)));
    return;
  }
}

// Megahertz of a speed that is taken to be in gigahertz, whatever its unit: 2.4 GHz is 2400, and
// 800 MHz is 800000.
std::int64_t clockSpeed(const Item& hardware) {
  const auto gigahertz =
      static_cast<float>(std::atof(FirstWord(hardware.text("current_processor_speed")).c_str()));
  const float megahertz = gigahertz * 1000.0F;
  return truncateToInteger(megahertz);
}

}  // namespace

void PostProcessProcessors(kevaDoc& snapshot, const kevaDoc& raw) {
  const std::vector<Item> list = items(raw, "SPHardwareDataType");
  if (list.empty()) return;
  const Item& hardware = list.front();
  const Counts counts{hardware.has("packages") ? hardware.integer("packages") : 1,
                      coreCount(hardware)};
  constexpr std::int64_t kMost = 1024;  // far beyond any Mac: a wrong count costs no more than that
  Entries processors(snapshot, {"Processors"}, "Processor:");
  for (std::int64_t n = 1; n <= std::min(counts.packages, kMost); ++n) {
    const TagValue numbered(formatString("CPU #%lld", static_cast<long long>(n)));
    Tag& processor =
        processors.add(hardware.has("cpu_type") ? hardware.value("cpu_type") : numbered);
    processor.setAttribute("core-count", TagValue(counts.cores));
    writeCache("l2-cache-size", kL2, hardware, counts, processor);
    writeCache("l3-cache-size", kL3, hardware, counts, processor);
    processor.setAttribute("current-clock-speed", TagValue(clockSpeed(hardware)));
  }
}
