#include "fleet/clickhouse.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/formatString.h"
#include "fleet/entries.h"
#include "machine/valueText.h"

namespace fleet {

namespace {

using machine::Table;
using machine::Type;
using machine::Value;

constexpr std::size_t kScans = 0;
constexpr std::size_t kDocuments = 1;
constexpr std::size_t kFirstStored = 2;

const char* nameOf(std::size_t place) {
  if (place == kScans) return "scans";
  if (place == kDocuments) return "documents";
  return storedTable(place - kFirstStored).name.data();
}

// --- tables

// Rows are told apart by some, which may not be null.
const char* typeOf(std::string_view column, Type type) {
  constexpr std::string_view kNeverNull[] = {"file", "machine_serial", "scanned_at"};
  if (std::ranges::find(kNeverNull, column) != std::end(kNeverNull)) return "String";
  switch (type) {
    case Type::Text:
      return "Nullable(String)";
    case Type::Integer:
      return "Nullable(Int64)";
    case Type::Real:
      return "Nullable(Float64)";
    case Type::Flag:
      return "Nullable(UInt8)";
  }
  return "";
}

std::string columnsOf(std::size_t place) {
  if (place == kScans) {
    return "file String, digest String, machine_serial String, serial Nullable(String), "
           "scanned_at String, scanned_unix Nullable(Int64), source String";
  }
  if (place == kDocuments) {
    return "file String, machine_serial String, serial Nullable(String), scanned_at String, "
           "document String, paths Array(String), contents Array(String), digest String, "
           "row_number UInt32";
  }
  const Table& table = storedTable(place - kFirstStored);
  std::string list;
  const auto add = [&list](std::string_view name, std::string_view type) {
    list += list.empty() ? "`" : ", `";  // "default" is a word of the language
    list += std::string(name) + "` " + std::string(type);
  };
  for (const auto& [name, source] : kScanColumns) {
    if (findColumn(table, name) == nullptr) add(name, typeOf(name, Type::Text));
  }
  for (const machine::Column& column : table.columns)
    add(column.name, typeOf(column.name, column.type));
  return list + ", digest String, row_number UInt32";
}

std::string table(std::size_t place) {
  return formatString(
      "CREATE TABLE IF NOT EXISTS %s (%s) ENGINE = ReplacingMergeTree ORDER BY (machine_serial, "
      "scanned_at, digest%s);\n",
      nameOf(place), columnsOf(place).c_str(), place == kScans ? "" : ", row_number");
}

// The latest scan of each machine; where nothing tells machines apart every file is one.
std::string latest(const std::string& name) {
  return formatString(
      "CREATE VIEW IF NOT EXISTS %s_now AS SELECT * FROM %s FINAL WHERE digest IN ("
      "SELECT argMax(digest, (ifNull(scanned_unix, 0), digest)) FROM scans "
      "GROUP BY if(machine_serial = '', digest, machine_serial));\n",
      name.c_str(), name.c_str());
}

std::string entries(const char* suffix) {
  return formatString(
      "CREATE VIEW IF NOT EXISTS entries%s AS SELECT file, machine_serial, serial, scanned_at, "
      "document, path, value FROM documents%s ARRAY JOIN paths AS path, contents AS value;\n",
      suffix, suffix);
}

// --- rows

// As a JSON string. Bytes that are no UTF-8 stay what they are: the engine's texts are bytes.
void addText(std::string& json, std::string_view text) {
  json += '"';
  std::size_t kept = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte >= ' ' && byte != '"' && byte != '\\') continue;
    json.append(text, kept, i - kept);
    json += formatString("\\u%04x", byte);
    kept = i + 1;
  }
  json.append(text, kept);
  json += '"';
}

void addKey(std::string& json, std::string_view name) {
  json += json.empty() ? "{\"" : ",\"";
  json += name;
  json += "\":";
}

// What is not known is left out, which is null, or "" where nothing may be.
void addMember(std::string& json, std::string_view name, const Value& value) {
  if (!machine::isKnown(value)) return;
  addKey(json, name);
  if (const bool* flag = std::get_if<bool>(&value)) {
    json += *flag ? '1' : '0';
  } else if (const std::string* text = std::get_if<std::string>(&value)) {
    addText(json, *text);
  } else {
    json += machine::valueText(value);
  }
}

// What is in front of every row of a scan.
std::string leading(const Scan& scan, bool serial, bool time) {
  std::string json;
  addMember(json, "file", Value(scan.file));
  addMember(json, "digest", Value(scan.digest));
  addMember(json, "machine_serial", scan.owner);
  if (serial) {
    addMember(json, "serial", scan.machine.machine(machine::columnAt("machine", "serial")));
  }
  if (time) {
    addMember(json, "scanned_at", scan.machine.machine(machine::columnAt("machine", "scanned_at")));
  }
  return json;
}

std::string scanRow(const Scan& scan) {
  std::string json = leading(scan, true, true);
  if (scan.scannedUnix) addMember(json, "scanned_unix", Value(*scan.scannedUnix));
  addMember(json, "source", scan.machine.machine(machine::columnAt("machine", "source")));
  return json + "}";
}

std::string documentRows(const Scan& scan) {
  auto file = huxread::Container::parse(scan.bytes);
  if (!file) return "";
  std::string rows;
  std::string paths;
  std::string contents;
  std::string document;
  std::int64_t number = 0;
  const auto end = [&] {
    if (paths.empty()) return;
    std::string row = leading(scan, true, true);
    addMember(row, "row_number", Value(number++));
    addMember(row, "document", Value(document));
    addKey(row, "paths");
    row += "[" + paths + "]";
    addKey(row, "contents");
    row += "[" + contents + "]";
    rows += row + "}";
    paths.clear();
    contents.clear();
  };
  Entries all(std::move(*file));
  while (const Entry* entry = all.next()) {
    if (entry->document != document) {
      end();
      document = entry->document;
    }
    for (std::string* list : {&paths, &contents}) {
      if (!list->empty()) *list += ',';
      addText(*list, list == &paths ? entry->path : entry->value);
    }
  }
  end();
  return rows;
}

std::string storedRows(const Scan& scan, std::size_t place, const std::vector<machine::Row>& rows) {
  const Table& table = storedTable(place);
  const std::string front = leading(scan, findColumn(table, "serial") == nullptr,
                                    findColumn(table, "scanned_at") == nullptr);
  std::string all;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    all += front;
    addMember(all, "row_number", Value(static_cast<std::int64_t>(i)));
    for (std::size_t column = 0; column < rows[i].size(); ++column) {
      addMember(all, table.columns[column].name, rows[i][column]);
    }
    all += '}';
  }
  return all;
}

}  // namespace

std::string clickHouseTables() {
  // Where the tables are Distributed ones each shard finds the latest scans of its own machines.
  std::string statements = "SET distributed_product_mode = 'local';\n";
  for (std::size_t place = 0; place < kClickHouseCount; ++place) statements += table(place);
  for (std::size_t place = 0; place < kClickHouseCount; ++place)
    statements += latest(nameOf(place));
  return statements + entries("") + entries("_now");
}

ClickHouseRows clickHouseRows(const Scan& scan) {
  ClickHouseRows rows;
  rows[kScans] = scanRow(scan);
  rows[kDocuments] = documentRows(scan);
  for (std::size_t i = 0; i < machine::kTableCount; ++i) {
    rows[kFirstStored + i] = storedRows(scan, i, scan.machine[i].rows);
  }
  std::vector<machine::Row> findings;
  for (const inspect::Finding& finding : scan.findings) findings.push_back(rowOf(finding));
  rows.back() = storedRows(scan, machine::kTableCount, findings);
  return rows;
}

std::string ClickHouseInserts::add(const ClickHouseRows& rows) {
  std::string statements;
  for (std::size_t place = 0; place < kClickHouseCount; ++place) {
    waiting_[place] += rows[place];
    if (waiting_[place].size() >= kBatch) statements += take(place);
  }
  return statements;
}

std::string ClickHouseInserts::finish() {
  std::string statements;
  for (std::size_t place = 0; place < kClickHouseCount; ++place) statements += take(place);
  return statements;
}

// The data of an insert end where its line ends.
std::string ClickHouseInserts::take(std::size_t table) {
  if (waiting_[table].empty()) return "";
  return formatString("INSERT INTO %s FORMAT JSONEachRow ", nameOf(table)) +
         std::exchange(waiting_[table], "") + "\n";
}

}  // namespace fleet
