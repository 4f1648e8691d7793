#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/propertyList.h"

// A value on one line: "text", true, <number type>:<number>, @<seconds>, data, [ a b ] and
// { key=a }, dictionaries by key: hosts differ in their order.
inline std::string shown(const platform::PropertyList& value) {
  if (value.text() != nullptr) return '"' + std::string(*value.text()) + '"';
  if (value.boolean() != nullptr) return *value.boolean() ? "true" : "false";
  if (value.date() != nullptr) return "@" + std::to_string(std::int64_t(value.date()->seconds));
  if (const auto* number = value.number()) {
    const bool isReal = number->type == platform::NumberType::Float64;
    return std::to_string(static_cast<int>(number->type)) + ":" +
           (isReal ? std::to_string(number->real) : std::to_string(number->integer));
  }
  std::string all;
  if (value.array() != nullptr) {
    for (const auto& element : *value.array()) all += " " + shown(element);
    return "[" + all + " ]";
  }
  if (value.dictionary() == nullptr) return "data";
  const auto& entries = *value.dictionary();
  const std::multimap<std::string, platform::PropertyList> sorted(entries.begin(), entries.end());
  for (const auto& [key, entry] : sorted) all += " " + key + "=" + shown(entry);
  return "{" + all + " }";
}
