#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "base/sharedText.h"

// `text` in the normal form of TagValue::setText. Names of tags and attributes that come from
// outside go through it as well.
SharedText normalizedText(SharedText text);
SharedText normalizedText(std::string text);

// The typed scalar of the tag tree.
class TagValue {
 public:
  enum class Kind { None, Bool, Integer, Double, Text };  // as the order of the variant's types

  TagValue() = default;
  explicit TagValue(bool value) : value_(value) {}
  explicit TagValue(std::int64_t value) : value_(value) {}
  explicit TagValue(double value) : value_(value) {}
  explicit TagValue(const char* text);  // null gives the empty text, not "none"
  explicit TagValue(std::string_view text) { setText(text); }
  explicit TagValue(std::string text) : value_(normalizedText(std::move(text))) {}
  explicit TagValue(SharedText text) : value_(normalizedText(std::move(text))) {}

  TagValue(const TagValue&) = default;
  TagValue(TagValue&&) = default;
  ~TagValue() = default;

  // Copies kind and content. Assigning a value of kind None leaves the target as it is: a source
  // that had nothing to say does not wipe out what is known.
  TagValue& operator=(const TagValue& other);
  TagValue& operator=(TagValue&& other) noexcept;

  void set(bool value) { value_ = value; }
  void set(std::int64_t value) { value_ = value; }
  void set(double value) { value_ = value; }

  // Stores the text in its normal form, the same for every text of a snapshot:
  //   - it ends before its first NUL;
  //   - it is cut behind the carriage return of its first CR LF, and every other line feed becomes
  //     a carriage return: a stored text never holds a line feed, the line end of the text form;
  //   - blanks (only those, no tabs) are trimmed off both ends, but a text of one byte stays.
  void setText(std::string_view text);

  void clear() { value_ = std::monostate(); }

  Kind kind() const { return static_cast<Kind>(value_.index()); }

  // The content, or null when the value is of another kind.
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  const std::int64_t* integer() const { return std::get_if<std::int64_t>(&value_); }
  const double* number() const { return std::get_if<double>(&value_); }
  const SharedText* text() const { return std::get_if<SharedText>(&value_); }

 private:
  std::variant<std::monostate, bool, std::int64_t, double, SharedText> value_;
};
