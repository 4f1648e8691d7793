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

std::string jsonObject(const std::vector<std::string>& names, const machine::Row& row) {
  Json object = Json::object();
  for (std::size_t i = 0; i < row.size(); ++i) object.emplace(names[i], valueOf(row[i]));
  return dump(object);
}

std::string fileMembers(const machine::Description& machine, std::string_view file) {
  Json object = {
      {"file", file}
  };
  for (const char* name : {"source", "serial", "uuid", "name", "scanned_at"}) {
    object.emplace(name, valueOf(machine.machine(machine::columnAt("machine", name))));
  }
  const std::string text = dump(object);
  return text.substr(1, text.size() - 2);
}

std::string changesArray(const std::vector<inspect::Change>& changes) {
  using Kind = inspect::Change::Kind;
  std::string text = "[";
  for (const inspect::Change& change : changes) {
    const bool changed = change.kind == Kind::Changed;
    const bool added = change.kind == Kind::Added;
    Json object = {
        {"change", changed ? "changed"
                   : added ? "added"
                           : "removed"},
        {"table",  change.table->name                   },
        {"row",    change.row                           }
    };
    text += text.size() == 1 ? "" : ",";
    if (changed) {
      const auto place = static_cast<std::size_t>(change.column - change.table->columns.data());
      object.emplace("column", change.column->name);
      object.emplace("before", valueOf((*change.before)[place]));
      object.emplace("after", valueOf((*change.after)[place]));
      text += dump(object);
    } else {
      std::string head = dump(object);
      head.pop_back();
      text += head + R"(,"values":)" +
              rowObject(*change.table, added ? *change.after : *change.before) + "}";
    }
  }
  return text + "]";
}

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
