#pragma once

#include <string>
#include <utility>
#include <variant>

namespace huxread {

// What is wrong and where, in words for the person who opened the file. Holds no text taken from
// the file, so that it can go to a terminal as it is.
struct Error {
  std::string message;
};

// What was asked for, or why it cannot be had: the one way in which this library fails. (Running
// out of memory ends the program, as everywhere.)
template <typename T>
class Result {
 public:
  // Not explicit, so that a function can return either.
  Result(T value) : content_(std::move(value)) {}      // NOLINT(google-explicit-constructor)
  Result(Error error) : content_(std::move(error)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return std::holds_alternative<T>(content_); }

  // Only when there is a value.
  T& operator*() { return *std::get_if<T>(&content_); }
  const T& operator*() const { return *std::get_if<T>(&content_); }
  T* operator->() { return std::get_if<T>(&content_); }
  const T* operator->() const { return std::get_if<T>(&content_); }

  // Only when there is none.
  const Error& error() const { return *std::get_if<Error>(&content_); }

 private:
  std::variant<T, Error> content_;
};

}  // namespace huxread
