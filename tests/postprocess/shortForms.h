#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "support/documents.h"

// Shorthand for what goes into a step and what comes out of it.

// A raw document from data types, each followed by its items (support/shortForm.h).
kevaDoc rawDocument(std::initializer_list<std::string_view> typesAndItems);

// A text form where " | " is a line end too; a line end at the front is left out, one at the end
// added.
std::string lines(std::string text);

// The text form of the snapshot that a step writes from its sources (raw document, host).
template <typename Step, typename... Sources>
std::string snapshotOf(Step step, Sources&&... sources) {
  kevaDoc snapshot(true, "Snapshot");
  step(snapshot, sources...);
  return textOf(snapshot);
}
