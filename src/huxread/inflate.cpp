#include "huxread/inflate.h"

#include <zlib.h>

#include <array>
#include <memory>

#include "base/formatString.h"

namespace huxread {

namespace {

Error failure(int code, const z_stream& state) {
  switch (code) {
    case Z_BUF_ERROR:  // wants more input, and there is none
      return {formatString("the zlib stream is cut off after %lu bytes", state.total_in)};
    case Z_NEED_DICT:
      return {"the zlib stream needs a dictionary"};
    case Z_MEM_ERROR:
      return {"not enough memory to inflate the zlib stream"};
    default:
      return {formatString("no valid zlib stream: %s (near byte %lu)",
                           state.msg == nullptr ? "damaged" : state.msg, state.total_in)};
  }
}

}  // namespace

Result<std::string> inflateText(std::string_view stream, std::size_t limit) {
  constexpr std::size_t kChunk = 16384;  // bytes of output at a time

  z_stream state{};
  const int ready = inflateInit(&state);
  if (ready != Z_OK) return failure(ready, state);
  const std::unique_ptr<z_stream, decltype(&inflateEnd)> ending(&state, inflateEnd);

  // zlib reads its input only, but its structure has no const.
  state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stream.data()));
  state.avail_in = static_cast<uInt>(stream.size());
  std::string text;
  std::array<char, kChunk> output{};
  int code = Z_OK;
  while (code != Z_STREAM_END) {
    state.next_out = reinterpret_cast<Bytef*>(output.data());
    state.avail_out = kChunk;
    code = inflate(&state, Z_NO_FLUSH);
    if (code != Z_OK && code != Z_STREAM_END) return failure(code, state);
    text.append(output.data(), kChunk - state.avail_out);
    if (text.size() > limit) return Error{formatString("inflates to more than %zu bytes", limit)};
  }
  if (state.avail_in != 0) {
    return Error{formatString("%u bytes stand behind the end of the zlib stream", state.avail_in)};
  }
  return text;
}

}  // namespace huxread
