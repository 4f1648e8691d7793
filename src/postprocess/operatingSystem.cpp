#include "postprocess/operatingSystem.h"

#include <algorithm>
#include <iterator>

#include "base/digits.h"
#include "base/formatString.h"
#include "collect/osVersion.h"
#include "postprocess/mapping.h"

namespace {

const char* architecture(const OsVersion& os, const Item& software) {
  constexpr int kFirst64BitOnly = 7;
  if (os.minor >= kFirst64BitOnly) return "64-bit";
  return software.text("64bit_kernel_and_kexts") == "yes" ? "64-bit" : "32-bit";
}

}  // namespace

std::string uptimeInterval(const std::string& uptime) {
  constexpr long long kWeights[] = {1, 60, 3600, 86400};  // seconds; further fields are days too
  constexpr long long kMost = 1'000'000'000'000;          // far beyond any machine, and no overflow
  long long seconds = 0;
  std::size_t field = 0;
  long long place = kWeights[0];  // weight of the next digit to the left
  for (std::size_t i = uptime.size(); i > 0 && uptime[i - 1] != ' '; --i) {
    const char c = uptime[i - 1];
    if (c == ':') {
      field = std::min(field + 1, std::size(kWeights) - 1);
      place = kWeights[field];
    } else if (isDigit(c)) {
      seconds = std::min(seconds + (c - '0') * place, kMost);
      place = std::min(place * 10, kMost);
    }
  }
  return formatString("%08lld%02d%02d%02d.000000:000", seconds / 86400,
                      static_cast<int>(seconds % 86400 / 3600),
                      static_cast<int>(seconds % 3600 / 60), static_cast<int>(seconds % 60));
}

void PostProcessOperatingSystem(kevaDoc& snapshot, const kevaDoc& raw) {
  const std::vector<Item> list = items(raw, "SPSoftwareDataType");
  if (list.empty()) return;
  const Item& software = list.front();
  const OsVersion os = OsVersion::parse(software.text("os_version"));
  Tag& tag = *branch(snapshot, {"OS"}).setChild("os:1", TagValue(os.name));
  tag.addProperty("kind", "mac");
  tag.setAttribute("name", TagValue(os.name));
  tag.setAttribute("version", TagValue(os.version));
  if (!os.update.empty()) {
    tag.setAttribute("update", TagValue(formatString("Update %s", os.update.c_str())));
  }
  copyPresent(software, "kernel_version", tag, "kernel");
  tag.setAttribute("manuf", TagValue("Apple Inc."));
  tag.setAttribute("uptime", TagValue(uptimeInterval(software.text("uptime"))));
  tag.setAttribute("architecture", TagValue(architecture(os, software)));
}
