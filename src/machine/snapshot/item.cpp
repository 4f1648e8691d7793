#include "machine/snapshot/item.h"

#include <algorithm>

#include "machine/cleanText.h"
#include "machine/quantity.h"
#include "machine/words.h"

namespace machine::snapshot {

// --- tags

std::optional<TagView> find(const TagView& top, std::initializer_list<std::string_view> path) {
  std::optional<TagView> tag = top;
  for (const std::string_view name : path) {
    if (tag) tag = tag->child(name);
  }
  return tag;
}

std::optional<std::string_view> propertyOf(const TagView& tag, std::string_view attribute,
                                           std::string_view key) {
  const auto found = std::ranges::find(tag.attributes(), attribute, &huxread::Attribute::name);
  if (found == tag.attributes().end()) return std::nullopt;
  return found->property(key);
}

Value blocks(const TagView& tag, std::string_view attribute) {
  constexpr std::int64_t kBlock = 512;  // bytes
  const auto bytes = wholeNumber(propertyOf(tag, attribute, "base-value").value_or(""));
  if (!bytes || *bytes < 0 || *bytes % kBlock != 0) return {};
  return *bytes;
}

// --- tables

void write(std::span<const Cell<Convert>> cells, const TagView& tag, Row& row) {
  writeCells(
      cells, [&tag](const char* key) { return tag.attribute(key); }, row);
}

Row& addRow(TableData& table, std::size_t place) {
  return table.rows.emplace_back(emptyRow(place));
}

Row& machineRow(Description& machine) {
  constexpr std::size_t kMachine = tableAt("machine");
  TableData& table = machine[kMachine];
  return table.rows.empty() ? addRow(table, kMachine) : table.rows.front();
}

// --- conversions

Value text(std::string_view text) {
  return textValue(text);
}

Value stated(std::string_view text) {
  return statedValue(text);
}

Value word(std::string_view text) {
  return textValue(wordOf(text));
}

Value integer(std::string_view text) {
  const auto number = wholeNumber(text);
  return number ? Value(*number) : Value();
}

Value count(std::string_view text) {
  const auto number = wholeNumber(text);
  return number && *number > 0 ? Value(*number) : Value();
}

Value flag(std::string_view text) {
  if (text == "1") return true;
  return text == "0" ? Value(false) : Value();
}

Value real(std::string_view text) {
  const auto number = leadingNumber(text);
  return number ? Value(*number) : Value();
}

}  // namespace machine::snapshot
