#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/sharedText.h"

namespace platform {

// The CFNumberType constants: how the platform holds a number. They decide how it is stored.
enum class NumberType : int {
  SInt8 = 1,
  SInt16,
  SInt32,
  SInt64,
  Float32,
  Float64,
  Char,
  Short,
  Int,
  Long,
  LongLong,
  Float,
  Double,
  CFIndex,
  NSInteger,
  CGFloat,
};

constexpr bool isReal(NumberType type) {
  return type == NumberType::Float32 || type == NumberType::Float64 || type == NumberType::Float ||
         type == NumberType::Double || type == NumberType::CGFloat;
}

// A value of a property list with everything below it, owned; texts may share their bytes with the
// document.
class PropertyList {
 public:
  struct Number {
    NumberType type;
    std::int64_t integer = 0;  // 0 when isReal(type)
    double real = 0;           // 0 when not
  };
  struct Date {
    double seconds;  // since 2001-01-01 00:00:00 UTC
  };
  struct Data {};  // bytes that no scan reads: recognised, not kept
  using Array = std::vector<PropertyList>;
  // In the order of the document; on a Mac, whose parser does not keep it, in that of the keys'
  // bytes, nearly the one in which the platform prints its lists. No key stands twice.
  using Dictionary = std::vector<std::pair<SharedText, PropertyList>>;

  PropertyList(SharedText text) : value_(std::move(text)) {}
  PropertyList(std::string text) : value_(SharedText(std::move(text))) {}
  PropertyList(const char* text) : value_(SharedText(text)) {}
  PropertyList(bool boolean) : value_(boolean) {}
  PropertyList(Number number) : value_(number) {}
  PropertyList(Date date) : value_(date) {}
  PropertyList(Data data) : value_(data) {}
  PropertyList(Array array) : value_(std::move(array)) {}
  PropertyList(Dictionary dictionary) : value_(std::move(dictionary)) {}

  // The content, or null when the value is of another kind. Texts are UTF-8.
  const SharedText* text() const { return std::get_if<SharedText>(&value_); }
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  const Number* number() const { return std::get_if<Number>(&value_); }
  const Date* date() const { return std::get_if<Date>(&value_); }
  const Array* array() const { return std::get_if<Array>(&value_); }
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value_); }

  // The same, to be moved from.
  SharedText* text() { return std::get_if<SharedText>(&value_); }
  Array* array() { return std::get_if<Array>(&value_); }
  Dictionary* dictionary() { return std::get_if<Dictionary>(&value_); }

  // The value of a dictionary's key; null when it has none or this is no dictionary.
  const PropertyList* find(std::string_view key) const;

  // The element of an array; null from its end on and when this is no array.
  const PropertyList* at(std::size_t index) const;

 private:
  std::variant<SharedText, bool, Number, Date, Data, Array, Dictionary> value_;
};

}  // namespace platform
