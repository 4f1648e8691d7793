#include <algorithm>

#include "command.h"
#include "files.h"
#include "huxread/check.h"
#include "huxread/salvage.h"
#include "inspect/findings.h"
#include "machine/describe.h"
#include "output.h"
#include "platform/host.h"

using huxread::Container;
using huxread::Problem;
using huxread::Salvaged;
using inspect::Finding;
using inspect::Severity;

namespace {

std::vector<Finding> damageOf(const Container& file, std::optional<huxread::Document>& snapshot) {
  constexpr const char* kIds[] = {"HUX002", "HUX005", "HUX003", "HUX004"};  // as Problem::Kind
  std::vector<Finding> findings;
  for (const Problem& problem : huxread::check(file, &snapshot)) {
    findings.push_back(
        inspect::finding(kIds[static_cast<std::size_t>(problem.kind)], problem.message));
  }
  return findings;
}

bool isDamage(const Finding& finding) {
  return finding.kind->severity == Severity::Damage;
}

void append(std::vector<Finding>& findings, std::vector<Finding> more) {
  findings.insert(findings.end(), more.begin(), more.end());
}

// What there is to say about a file that opens; the machine in it is looked at as far as it can be
// read.
std::vector<Finding> findingsOf(const Container& file, bool complete) {
  std::optional<huxread::Document> snapshot;
  std::vector<Finding> findings = damageOf(file, snapshot);
  const auto host = platform::makeHost();
  const auto machine = machine::describe(file, *host, snapshot ? &*snapshot : nullptr);
  if (machine) {
    if (complete) append(findings, inspect::findGaps(*machine));
    append(findings, inspect::findRemarks(*machine));
  } else if (std::ranges::none_of(findings, isDamage)) {  // which would be why
    findings.push_back(inspect::finding("HUX006", machine.error().message));
  }
  return findings;
}

// "FILE: HUX201 remark: the firewall is off"
Outcome report(const std::string& path, const std::vector<Finding>& findings,
               const std::vector<std::string>& ignored) {
  Outcome outcome;
  for (const Finding& finding : findings) {
    if (std::ranges::find(ignored, finding.kind->id) != ignored.end()) continue;
    const Severity severity = finding.kind->severity;
    if (severity == Severity::Damage || severity == Severity::Incomplete) outcome.code = kNo;
    outcome.output += show::onOneLine(path) + ": " + std::string(finding.kind->id) + " " +
                      inspect::severityName(severity) + ": " + show::onOneLine(finding.text) + "\n";
  }
  if (outcome.output.empty()) outcome.output = show::onOneLine(path) + ": no findings\n";
  return outcome;
}

Outcome verify(const std::string& path, const Arguments& arguments) {
  auto bytes = readBytes(path);
  if (!bytes) return {"", message(path, bytes.error().message), kTrouble};
  const auto file = Container::take(*bytes);
  if (file) return report(path, findingsOf(*file, arguments.complete), arguments.ignored);
  const Salvaged salvaged = huxread::salvage(*bytes);
  if (salvaged.damage == Salvaged::Damage::Foreign) {
    return {"", message(path, file.error().message), kTrouble};
  }
  const bool cut = salvaged.damage == Salvaged::Damage::Cut;
  return report(path, {inspect::finding(cut ? "HUX001" : "HUX002", salvaged.what)},
                arguments.ignored);
}

}  // namespace

int runVerify(const Arguments& arguments) {
  for (const std::string& id : arguments.ignored) {
    const auto kinds = inspect::findingKinds();
    if (std::ranges::find(kinds, id, &inspect::FindingKind::id) == kinds.end()) {
      printMessage(id, "there is no such finding");
      return kTrouble;
    }
  }
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  const int worst =
      forEachFile(files, [&arguments](const std::string& path) { return verify(path, arguments); });
  return std::max(code, worst);
}
