#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "machine/secretPlaces.h"

namespace redact {

// A text within a document that something is known about.
struct Field {
  std::size_t begin;  // in the document; without the blanks around it
  std::size_t end;
  std::string_view parent = {};  // the key around the key
  std::string_view key = {};     // "" of a tag's own value and of a key that is a name
  const machine::SecretPlace* place = nullptr;  // null when it is no secret's
  bool data = false;                            // bytes in base64
  bool number = false;                          // where nothing but a number can stand
  bool date = false;                            // it is one, which is never a secret
};

// Every value of the text form of a document, or of the profiler's XML; and the keys in the latter
// that are names. Reads any text; what is malformed ends where it may.
void walkDocument(std::string_view text, const std::function<void(const Field& field)>& take);
void walkProfile(std::string_view text, const std::function<void(const Field& field)>& take);

}  // namespace redact
