#include "inspect/findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "support/fileText.h"
#include "support/rows.h"

using inspect::Finding;
using machine::Source;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> texts(const std::vector<Finding>& findings) {
  std::vector<std::string> lines;
  for (const Finding& finding : findings) {
    lines.push_back(std::string(finding.kind->id) + " " + finding.text);
  }
  return lines;
}

}  // namespace

TEST(Findings, AreExplainedInTheDocument) {
  const std::string page = fileText(PROJECT_FOLDER "/docs/findings.md");
  std::vector<std::string> documented;
  const std::regex row(R"(\| (HUX\d+) \| ([^|]+) \|)");
  for (std::sregex_iterator match(page.begin(), page.end(), row), end; match != end; ++match) {
    documented.push_back((*match)[1].str() + " " + (*match)[2].str());
  }
  std::vector<std::string> known;
  for (const inspect::FindingKind& kind : inspect::findingKinds()) {
    known.push_back(std::string(kind.id) + " " + std::string(kind.title));
  }
  EXPECT_EQ(documented, known);
}

TEST(Findings, SayWhatAPersonMayWantToActOn) {
  auto mac = described(Source::Debug, R"(
      firewall: kind=global | name=mode | setting=allow_all
      firewall: kind=application | name=mode | setting=allow_all
      machine: integrity_protection=false
      disks: model=GOOD | health=verified
      disks: model=BAD | health=failing
      volumes: name=Full | container=disk3 | size_bytes=1000 | free_bytes=49
      volumes: name=Shares its space | container=disk3 | size_bytes=1000 | free_bytes=49
      volumes: name=Room | size_bytes=1000 | free_bytes=50
      volumes: name=Image | size_bytes=1000 | free_bytes=0 | writable=false
      volumes: name=System | mount_point=/ | encrypted=false
      memory: slot=DIMM 2 | status=mapped_out
      memory: slot=DIMM 3 | status=empty
      battery: condition=Service
      environment: name=Npm_Token | value=hush
      environment: name=HOME | value=/password)");
  mac.setLacksItems();
  EXPECT_THAT(
      texts(inspect::findRemarks(mac)),
      ElementsAre("HUX007 items of the profiler's report cannot be read: what they tell is missing",
                  "HUX201 the firewall is off", "HUX206 the system integrity protection is off",
                  "HUX202 a disk is failing: BAD", "HUX204 a volume is nearly full: Full",
                  "HUX208 the startup volume is not encrypted: System",
                  "HUX207 a memory module does not work: DIMM 2",
                  "HUX205 the battery needs service: Service",
                  "HUX203 the environment holds secrets: Npm_Token"));
}

TEST(Findings, TellGapsFromLimits) {
  const auto mac = described(Source::Snapshot, R"(
      machine: model_id=Mac17,2 | os_name=macOS | os_version=26.1 | architecture=arm64
        | mac_address=F2-4D-89-00-11-22
      software: name=Safari)");
  EXPECT_THAT(
      texts(inspect::findGaps(mac)),
      ElementsAre("HUX103 no processor", "HUX104 no amount of memory", "HUX105 no disk",
                  "HUX106 no network service", "HUX108 no serial number", "HUX109 no hardware UUID",
                  "HUX110 the hardware address is locally administered: it may change"));
  std::string ids;
  for (const Finding& limit : inspect::findRemarks(mac)) ids += std::string(limit.kind->id) + " ";
  EXPECT_EQ(ids, "HUX301 HUX302 HUX303 HUX304 HUX305 HUX306 ");
  EXPECT_THAT(inspect::findRemarks(described(Source::Debug, "")), IsEmpty());
}
