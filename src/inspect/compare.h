#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "machine/description.h"

namespace inspect {

// One thing that is different between two files. Points into the two descriptions, which must
// outlive it.
struct Change {
  enum class Kind { Added, Removed, Changed };

  Kind kind;
  const machine::Table* table;
  std::string row;                // what a person calls it (rowTitle); "" in a table with one row
  const machine::Column* column;  // of Changed; else null: the whole row came or went
  const machine::Row* before;     // null for Added
  const machine::Row* after;      // null for Removed
};

struct CompareOptions {
  // Also what changes by itself (Changes and kPassing in schema.h), and what a snapshot states by
  // rules of its own where the other file is a debug file.
  bool all = false;
  std::vector<std::string> ignored = {};  // "processes", "volumes.name"; see isInSchema
};

// Whether there is such a table, or such a column of a table.
bool isInSchema(std::string_view name);

struct Comparison {
  std::vector<Change> changes;  // by the order of tables, of rows, of columns
  bool sameMachine = true;      // by serial number, else by UUID; also when neither file knows any
};

// What changed from one file to the other: rows by identity, not by place; of several with the same
// identity, or with none, those with the same content belong together, the others in their order.
// Only what both files know counts: values that either does not know, and tables that either does
// not record, do not differ. The time grows with the number of rows.
Comparison compare(const machine::Description& before, const machine::Description& after,
                   const CompareOptions& options);

}  // namespace inspect
