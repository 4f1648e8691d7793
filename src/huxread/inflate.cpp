#include "huxread/inflate.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>

#include "base/formatString.h"

namespace huxread {

namespace {

std::string problemOf(int code, const z_stream& state) {
  switch (code) {
    case Z_BUF_ERROR:  // wants more input, and there is none
      return formatString("the zlib stream is cut off after %lu bytes", state.total_in);
    case Z_NEED_DICT:
      return "the zlib stream needs a dictionary";
    case Z_MEM_ERROR:
      return "not enough memory to inflate the zlib stream";
    default:
      return formatString("no valid zlib stream: %s (near byte %lu)",
                          state.msg == nullptr ? "damaged" : state.msg, state.total_in);
  }
}

}  // namespace

Inflated inflateAll(std::string_view bytes, std::size_t limit, std::size_t expected) {
  using End = Inflated::End;
  constexpr std::size_t kChunk = 16384;  // bytes of output at a time

  Inflated result;
  result.text.reserve(std::min(limit, expected));
  z_stream state{};
  int code = inflateInit(&state);
  const std::unique_ptr<z_stream, decltype(&inflateEnd)> ending(&state, inflateEnd);
  // zlib reads its input only, but its structure has no const.
  state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  state.avail_in = static_cast<uInt>(bytes.size());
  std::array<char, kChunk> output{};
  while (code == Z_OK) {
    state.next_out = reinterpret_cast<Bytef*>(output.data());
    state.avail_out = kChunk;
    code = inflate(&state, Z_NO_FLUSH);
    const std::size_t count = kChunk - state.avail_out;
    const std::size_t room = limit - result.text.size();
    result.text.append(output.data(), std::min(count, room));
    if (count > room) {
      result.end = End::TooLong;
      result.problem = formatString("inflates to more than %zu bytes", limit);
      break;
    }
  }
  result.used = bytes.size() - state.avail_in;
  if (code == Z_STREAM_END && result.problem.empty()) {
    result.end = End::Complete;
  } else if (result.problem.empty()) {
    result.end = code == Z_BUF_ERROR ? End::CutOff : End::Damaged;
    result.problem = problemOf(code, state);
  }
  return result;
}

Result<std::string> inflateText(std::string_view stream, std::size_t limit) {
  // Large documents inflate to 10 to 20 times the bytes. What is not used of the room stays address
  // space.
  constexpr std::size_t kGrowth = 20;
  constexpr std::size_t kMostRoom = std::size_t{64} << 20;
  Inflated result = inflateAll(stream, limit, std::min(stream.size() * kGrowth, kMostRoom));
  if (!result.problem.empty()) return Error{std::move(result.problem)};
  if (result.used == stream.size()) return std::move(result.text);
  return Error{formatString("%zu bytes stand behind the end of the zlib stream",
                            stream.size() - result.used)};
}

}  // namespace huxread
