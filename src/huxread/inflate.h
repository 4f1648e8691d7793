#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "huxread/result.h"

namespace huxread {

// The text of the one zlib stream (RFC 1950) that `stream`, of less than 4 GiB, consists of.
// Fails when the stream is damaged, ends early or is followed by anything, and as soon as the text
// grows beyond `limit` bytes: a few kilobytes can inflate to gigabytes.
Result<std::string> inflateText(std::string_view stream, std::size_t limit);

}  // namespace huxread
