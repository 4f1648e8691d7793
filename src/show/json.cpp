#include "show/json.h"

#include <nlohmann/json.hpp>
#include <variant>

namespace show {

namespace {

using Json = nlohmann::ordered_json;

std::string dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json valueOf(const machine::Value& value) {
  return std::visit(
      [](const auto& known) -> Json {
        if constexpr (std::is_same_v<std::decay_t<decltype(known)>, std::monostate>)
          return nullptr;
        else
          return known;
      },
      value);
}

// Not as a tree of the whole document, which takes ten times the text's memory.
std::string rowObject(const machine::Table& table, const machine::Row& row) {
  Json object = Json::object();
  for (std::size_t i = 0; i < row.size(); ++i) {
    object.emplace(table.columns[i].name, valueOf(row[i]));
  }
  return dump(object);
}

}  // namespace

std::string json(const machine::Description& machine, std::string_view file, JsonLayout layout) {
  const bool lines = layout == JsonLayout::Lines;
  const auto newLine = [lines](const char* indent) {
    return lines ? "\n" + std::string(indent) : std::string();
  };
  const bool snapshot = machine.source() == machine::Source::Snapshot;
  std::string text = "{" + newLine("  ") + R"("format":"hux-json/1",)" + newLine("  ") +
                     R"("file":)" + dump(file) + "," + newLine("  ") + R"("source":)" +
                     (snapshot ? R"("snapshot")" : R"("debug")") + "," + newLine("  ") +
                     R"("tables":{)";
  for (std::size_t i = 0; i < machine::kTableCount; ++i) {
    const machine::Table& table = machine::kTables[i];
    const machine::TableData& data = machine[i];
    text += (i == 0 ? "" : ",") + newLine("    ") + dump(table.name) + ":";
    if (!data.recorded || (table.single && data.rows.empty())) {
      text += "null";
    } else if (table.single) {
      text += rowObject(table, data.rows.front());
    } else {
      text += "[";
      const char* separator = "";
      for (const machine::Row& row : data.rows) {
        text += separator + newLine("      ") + rowObject(table, row);
        separator = ",";
      }
      text += data.rows.empty() ? "]" : newLine("    ") + "]";
    }
  }
  return text + newLine("  ") + "}" + newLine("") + "}\n";
}

}  // namespace show
