#include "inspect/lookup.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "inspect/letterCase.h"
#include "machine/valueText.h"

namespace inspect {

using huxread::Attribute;
using huxread::Document;
using huxread::Error;
using huxread::Property;
using huxread::Result;
using huxread::TagView;
using machine::Column;
using machine::Description;
using machine::Identity;
using machine::isKnown;
using machine::Row;
using machine::Table;
using machine::TableData;
using machine::valueText;

namespace {

// "software[Safari].version" taken apart.
struct Name {
  std::string_view table;
  std::optional<std::string_view> row;
  std::string_view column;
};

std::optional<Name> parseName(std::string_view text) {
  const std::size_t dot = text.rfind('.');
  const std::size_t open = text.find('[');
  if (dot == std::string_view::npos) return std::nullopt;
  if (open == std::string_view::npos) return Name{text.substr(0, dot), {}, text.substr(dot + 1)};
  if (dot < open || dot == 0 || text[dot - 1] != ']') return std::nullopt;
  return Name{text.substr(0, open), text.substr(open + 1, dot - open - 2), text.substr(dot + 1)};
}

bool isCalled(const Table& table, const Row& row, const std::string& wanted) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    const Column& column = table.columns[i];
    const bool names =
        column.identity != Identity::No || column.name == "name" || column.name == "model";
    if (names && isKnown(row[i]) && foldCase(valueText(row[i])) == wanted) return true;
  }
  return false;
}

// The rows of that name, else the one of that number.
std::vector<const Row*> rowsCalled(const Table& table, const TableData& data,
                                   std::string_view called) {
  std::vector<const Row*> found;
  const std::string wanted = foldCase(called);
  for (const Row& row : data.rows) {
    if (isCalled(table, row, wanted)) found.push_back(&row);
  }
  std::size_t number = 0;
  const char* const end = called.data() + called.size();
  const auto [rest, error] = std::from_chars(called.data(), end, number);
  if (found.empty() && error == std::errc() && rest == end && number >= 1 &&
      number <= data.rows.size()) {
    found.push_back(&data.rows[number - 1]);
  }
  return found;
}

}  // namespace

Result<std::vector<std::string>> lookUp(const Description& machine, std::string_view name) {
  const std::optional<Name> parsed = parseName(name);
  if (!parsed) return Error{"no name of the form TABLE.COLUMN or TABLE[ROW].COLUMN"};
  const Table* table = machine::findTable(parsed->table);
  if (table == nullptr) return Error{"there is no such table"};
  const Column* column = machine::findColumn(*table, parsed->column);
  if (column == nullptr)
    return Error{"the table " + std::string(table->name) + " has no such column"};
  const TableData& data = machine[machine::tableAt(table->name)];
  if (!data.recorded) return Error{"not recorded in this file"};

  std::vector<const Row*> rows;
  if (parsed->row) {
    rows = rowsCalled(*table, data, *parsed->row);
    if (rows.empty()) return Error{"there is no such row"};
  } else {
    for (const Row& row : data.rows) rows.push_back(&row);
  }
  std::vector<std::string> values;
  const auto place = static_cast<std::size_t>(column - table->columns.data());
  for (const Row* row : rows) {
    if (isKnown((*row)[place])) values.push_back(valueText((*row)[place]));
  }
  if (values.empty()) return Error{"not known"};
  return values;
}

namespace {

class PathWalk {
 public:
  // Values of properties of that key, else values themselves.
  explicit PathWalk(std::optional<std::string_view> property) : property_(property) {}

  // What `rest` leads to below a tag. Names may hold "/": every child whose name it begins with is
  // followed.
  std::vector<std::string> from(const TagView& tag, std::string_view rest) {
    visit(tag, rest);
    return std::move(values_);
  }

 private:
  void visit(const TagView& tag, std::string_view rest) {
    if (rest.empty()) take(tag.value(), tag.properties());
    for (const Attribute& attribute : tag.attributes()) {
      if (attribute.name == rest) take(attribute.value, attribute.properties);
    }
    for (auto child = tag.firstChild(); child; child = child->nextSibling()) {
      const std::string_view name = child->name();
      if (rest.size() > name.size() && rest.starts_with(name) && rest[name.size()] == '/') {
        visit(*child, rest.substr(name.size() + 1));
      }
    }
  }

  void take(std::string_view value, std::span<const Property> properties) {
    if (!property_) {
      values_.emplace_back(value);
      return;
    }
    for (const Property& property : properties) {
      if (property.key == *property_) values_.emplace_back(property.value);
    }
  }

  std::optional<std::string_view> property_;
  std::vector<std::string> values_;
};

}  // namespace

Result<std::vector<std::string>> lookUpPath(const Document& document, std::string_view path) {
  const std::optional<TagView> top = document.top();
  if (!top || !path.starts_with('/')) return Error{"there is no such path"};
  path.remove_prefix(1);
  std::vector<std::string> values = PathWalk(std::nullopt).from(*top, path);
  const std::size_t mark = path.rfind('~');
  if (values.empty() && mark != std::string_view::npos) {
    values = PathWalk(path.substr(mark + 1)).from(*top, path.substr(0, mark));
  }
  if (values.empty()) return Error{"there is no such path"};
  return values;
}

}  // namespace inspect
