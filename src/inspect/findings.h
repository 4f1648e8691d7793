#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "machine/description.h"

// What is worth saying about a file and the machine in it, beyond what its tables hold.
// docs/findings.md explains each for people; a test keeps the two lists equal.

namespace inspect {

enum class Severity {
  Damage,      // the file cannot be read as it was written
  Incomplete,  // something is missing that every Mac has
  Remark,      // somebody may want to act
  Limit,       // a snapshot cannot say it of this system, or says it wrongly; a debug file can
};

// "damage", "incomplete", "remark", "limit".
const char* severityName(Severity severity);

struct FindingKind {
  std::string_view id;  // "HUX201"; never given to anything else later
  Severity severity;
  std::string_view title;
};

// Every kind there is, by id.
std::span<const FindingKind> findingKinds();

struct Finding {
  const FindingKind* kind;
  std::string
      text;  // what exactly: one line, without text that the file could choose to mislead with
};

// A finding of the kind with that id, which must exist.
Finding finding(std::string_view id, std::string text);

// What a complete inventory of any Mac has and this one lacks.
std::vector<Finding> findGaps(const machine::Description& machine);

// Remarks and limits, and the damage that shows in the tables only.
std::vector<Finding> findRemarks(const machine::Description& machine);

// Whether a volume has so little room left that it is a remark. Disk images and discs, which are
// full by nature, have not.
bool isNearlyFull(const machine::Row& volume);

// Whether there is a memory module of which the machine says that it does not work.
bool isBroken(const machine::Row& module);

}  // namespace inspect
