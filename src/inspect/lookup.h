#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "huxread/document.h"
#include "huxread/result.h"
#include "machine/description.h"

namespace inspect {

// The values that a name of this form leads to, as valueText shows them:
//
//   machine.memory_mb           a column of a table with one row
//   software.version            of every row that knows it, in order
//   software[Safari].version    of the rows that are called so: by any column that identifies a
//   row, by
//                               the name, the model or the profile, in any case of the letters
//   memory[2].size_mb           else by the number of the row, from 1
//
// Fails, in words, when there is no such table or column or row, when the file does not record the
// table, and when no value is known.
huxread::Result<std::vector<std::string>> lookUp(const machine::Description& machine,
                                                 std::string_view name);

// The values of a path of a document, as its text shows it, without the name of the top tag:
//
//   /OS/os:1/version            an attribute
//   /OS/os:1/                   the value of a tag itself
//   /Storage/Logical-disks/partition:1/size~base-value    a property of either
//
// Siblings that share a name all count. Fails when nothing is there.
huxread::Result<std::vector<std::string>> lookUpPath(const huxread::Document& document,
                                                     std::string_view path);

}  // namespace inspect
