#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "redact/kinds.h"

namespace redact {

// What is a secret by its shape, wherever it stands.
struct Shape {
  std::size_t begin;
  std::size_t end;
  Kind kind;
  std::string canonical;  // see canonicalOf
};

// Hands over hardware addresses and UUIDs with separators, network addresses, addresses of mail and
// the names of home folders, and what stands behind a key that says so. Left out is what every
// machine has: 0.0.0.0, 127.0.0.1, ::1, masks, addresses of groups and of everybody, the nil UUID,
// /Users/Shared. An IPv4 address looks like a version of four numbers: that is for the caller to
// tell.
void findShapes(std::string_view text, const std::function<void(const Shape& shape)>& take);

// One form of all spellings of a secret: hexadecimal digits of addresses and UUIDs ("x:..."), of
// network addresses the bytes as digits ("4:c0000211"), else the text in small letters ("n:mara").
// Nothing when a text is no address of that kind, or one that every machine has.
std::optional<std::string> canonicalOf(Kind kind, std::string_view text);

}  // namespace redact
