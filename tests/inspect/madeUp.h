#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "machine/description.h"

// Machines of tests, made row by row.

// A value as a test writes it.
struct Written : machine::Value {
  Written(const char* text) : machine::Value(std::string(text)) {}              // NOLINT
  Written(int integer) : machine::Value(static_cast<std::int64_t>(integer)) {}  // NOLINT
  Written(bool flag) : machine::Value(flag) {}                                  // NOLINT
};

inline machine::Description madeUp(machine::Source source) {
  return machine::Description(source);
}

// Adds a row, or to the one row of a table that has no more.
inline void put(machine::Description& machine, std::string_view table,
                std::initializer_list<std::pair<const char*, Written>> values) {
  const std::size_t place = machine::tableAt(table);
  const machine::Table& schema = machine::kTables[place];
  machine::TableData& data = machine[place];
  data.recorded = true;
  if (!schema.single || data.rows.empty()) data.rows.emplace_back(schema.columns.size());
  for (const auto& [name, value] : values) {
    data.rows.back()[machine::columnAt(table, name)] = value;
  }
}
