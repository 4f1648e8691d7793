#include "machine/profiler/item.h"

#include <chrono>
#include <cmath>
#include <string>

#include "base/formatString.h"
#include "base/text.h"
#include "machine/cleanText.h"
#include "machine/quantity.h"
#include "machine/words.h"

namespace machine::profiler {

namespace {

// What a text says as a quantity, in whole units of `unit`.
template <typename Parser>
Value quantity(const PropertyList& value, Parser parse, std::int64_t unit) {
  if (value.text() == nullptr) return {};
  const std::optional<std::int64_t> amount = parse(*value.text());
  if (!amount) return {};
  return *amount / unit;
}

}  // namespace

// --- single keys

std::string_view textIn(const PropertyList& item, std::string_view key) {
  const PropertyList* value = item.find(key);
  return value == nullptr || value->text() == nullptr ? "" : std::string_view(*value->text());
}

std::optional<std::int64_t> integerIn(const PropertyList& item, std::string_view key) {
  const PropertyList* value = item.find(key);
  if (value == nullptr) return std::nullopt;
  const Value number = integer(*value);
  return isKnown(number) ? std::optional(std::get<std::int64_t>(number)) : std::nullopt;
}

std::optional<bool> flagIn(const PropertyList& item, std::string_view key) {
  const PropertyList* value = item.find(key);
  if (value == nullptr) return std::nullopt;
  const Value yes = flag(*value);
  return isKnown(yes) ? std::optional(std::get<bool>(yes)) : std::nullopt;
}

std::span<const PropertyList> listIn(const PropertyList& item, std::string_view key) {
  const PropertyList* value = item.find(key);
  if (value == nullptr || value->array() == nullptr) return {};
  return *value->array();
}

void forEachBelow(
    const PropertyList& item,
    const std::function<void(const PropertyList& below, const PropertyList& parent)>& take) {
  for (const PropertyList& below : listIn(item, "_items")) {
    take(below, item);
    forEachBelow(below, take);
  }
}

// --- tables

void write(std::span<const Cell<Convert>> cells, const PropertyList& item, Row& row) {
  writeCells(
      cells, [&item](const char* key) { return item.find(key); }, row);
}

void complete(Row& row, const Row& other) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (!isKnown(row[i])) row[i] = other[i];
  }
}

// --- conversions

Value text(const PropertyList& value) {
  if (value.text() != nullptr) return textValue(*value.text());
  if (value.number() == nullptr || platform::isReal(value.number()->type)) return {};
  return std::to_string(value.number()->integer);
}

Value stated(const PropertyList& value) {
  return statedValue(textOf(text(value)));
}

Value word(const PropertyList& value) {
  if (value.text() == nullptr) return text(value);
  return textValue(wordOf(*value.text()));
}

Value joined(const PropertyList& value) {
  if (value.array() == nullptr) return text(value);
  std::string all;
  for (const PropertyList& element : *value.array()) {
    const Value one = element.text() == nullptr ? Value() : text(element);
    if (!isKnown(one)) continue;
    if (!all.empty()) all += ", ";
    all += textOf(one);
  }
  return all.empty() ? Value() : Value(std::move(all));
}

Value hardwareAddress(const PropertyList& value) {
  const Value address = text(value);
  return isKnown(address) ? Value(dashedAddress(textOf(address))) : Value();
}

Value integer(const PropertyList& value) {
  if (const auto* number = value.number(); number != nullptr) {
    if (!platform::isReal(number->type)) return number->integer;
    constexpr double kMost = 9e15;  // up to about here every whole number is a double
    if (!(std::abs(number->real) <= kMost) || std::trunc(number->real) != number->real) return {};
    return static_cast<std::int64_t>(number->real);
  }
  if (value.text() == nullptr) return {};
  std::string digits = *value.text();
  const std::optional<std::int64_t> number = wholeNumber(TrimChars(digits, " \t\n", kTrimBoth));
  return number ? Value(*number) : Value();
}

Value flag(const PropertyList& value) {
  if (value.boolean() != nullptr) return *value.boolean();
  if (value.number() != nullptr) {
    const Value number = integer(value);
    if (number == Value(std::int64_t{0})) return false;
    return number == Value(std::int64_t{1}) ? Value(true) : Value();
  }
  if (value.text() == nullptr) return {};
  struct Answer {
    std::string_view word;
    bool yes;
  };
  constexpr Answer kAnswers[] = {
      {"yes",      true },
      {"true",     true },
      {"on",       true },
      {"1",        true },
      {"enabled",  true },
      {"disabled", false},
      {"no",       false},
      {"0",        false},
      {"off",      false},
      {"false",    false},
  };
  std::string text = toLower(*value.text());
  TrimChars(text, " \t\n", kTrimBoth);
  const std::string last = text.substr(text.rfind('_') + 1);
  for (const Answer& answer : kAnswers) {
    if (last == answer.word) return answer.yes;
  }
  return {};
}

Value day(const PropertyList& value) {
  namespace chrono = std::chrono;
  if (value.date() == nullptr) return {};
  const double since2001 = value.date()->seconds;
  constexpr double kMost = 3e11;  // in seconds, some 9500 years
  if (!(std::abs(since2001) < kMost)) return {};
  constexpr double kDay = 86400;  // seconds
  constexpr chrono::sys_days kStart{chrono::year{2001} / 1 / 1};
  const chrono::days days(static_cast<int>(std::floor(since2001 / kDay)));
  const chrono::year_month_day date(kStart + days);
  const int year = static_cast<int>(date.year());
  if (year < 1 || year > 9999) return {};
  return formatString("%04d-%02u-%02u", year, static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()));
}

Value megabytes(const PropertyList& value) {
  return quantity(value, binaryBytes, std::int64_t{1} << 20);
}

Value kilobytes(const PropertyList& value) {
  return quantity(value, binaryBytes, std::int64_t{1} << 10);
}

Value diskBytes(const PropertyList& value) {
  return quantity(value, decimalBytes, 1);
}

Value clock(const PropertyList& value) {
  return quantity(value, megahertz, 1);
}

}  // namespace machine::profiler
