#include "fleet/scan.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <utility>

#include "base/formatString.h"
#include "base/isoTime.h"
#include "machine/describe.h"

namespace fleet {

namespace {

using machine::columnAt;
using machine::schema::No;
using machine::schema::Stays;
using machine::schema::Text;

constexpr machine::Column kFindingColumns[] = {
    {"id",       Text, No, Stays, machine::Secret::None,  "", "\"HUX201\", docs/findings.md explains it"},
    {"severity", Text, No, Stays, machine::Secret::None,  "",
     "\"damage\", \"incomplete\", \"remark\", \"limit\""                                                },
    {"text",     Text, No, Stays, machine::Secret::Whole, "", "what exactly"                            },
};

}  // namespace

const machine::Table kFindings = {"findings", false, "what is worth saying", kFindingColumns,
                                  "finding"};

machine::Row rowOf(const inspect::Finding& finding) {
  return {std::string(finding.kind->id), std::string(severityName(finding.kind->severity)),
          finding.text};
}

Digest digestOf(std::string_view bytes) {
  const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
  return formatString("%016llx%016llx", static_cast<unsigned long long>(hash.high64),
                      static_cast<unsigned long long>(hash.low64));
}

huxread::Result<Scan> readScan(std::string file, std::string bytes,
                               const huxread::Container& content, platform::Host& host) {
  auto machine = machine::describe(content, host);
  if (!machine) return machine.error();
  Digest digest = digestOf(bytes);
  const machine::Value& serial = machine->machine(columnAt("machine", "serial"));
  const machine::Value& uuid = machine->machine(columnAt("machine", "uuid"));
  machine::Value owner = machine::isKnown(serial) ? serial : uuid;
  const auto time =
      unixSeconds(machine::textOf(machine->machine(columnAt("machine", "scanned_at"))));
  std::vector<inspect::Finding> findings = inspect::findGaps(*machine);
  for (inspect::Finding& remark : inspect::findRemarks(*machine)) {
    findings.push_back(std::move(remark));
  }
  return Scan{std::move(file),     std::move(bytes),   std::move(digest), std::move(owner), time,
              std::move(*machine), std::move(findings)};
}

}  // namespace fleet
