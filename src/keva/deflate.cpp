#include "keva/deflate.h"

#include <zlib.h>

#include <array>
#include <utility>

#include "base/assertion.h"

std::optional<std::string> deflateText(std::string_view input, const DeflateSite& site) {
  constexpr std::size_t kChunk = 16384;  // bytes, of input and of output
  constexpr int kLevel = 9;

  z_stream strm{};
  if (deflateInit(&strm, kLevel) != Z_OK) return std::nullopt;

  std::string result;
  std::array<char, kChunk> output{};
  int ret = Z_OK;
  int flush = Z_NO_FLUSH;
  while (flush != Z_FINISH) {
    const std::string_view chunk = input.substr(0, kChunk);
    input.remove_prefix(chunk.size());
    flush = input.empty() ? Z_FINISH : Z_NO_FLUSH;
    // zlib reads its input only, but its structure has no const.
    strm.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(chunk.data()));
    strm.avail_in = static_cast<uInt>(chunk.size());
    do {
      strm.next_out = reinterpret_cast<Bytef*>(output.data());
      strm.avail_out = kChunk;
      ret = deflate(&strm, flush);
      requireThat(ret != Z_STREAM_ERROR, site.file, site.streamLine, "ret != Z_STREAM_ERROR");
      result.append(output.data(), kChunk - strm.avail_out);
    } while (strm.avail_out == 0);
    requireThat(strm.avail_in == 0, site.file, site.inputLine, "strm.avail_in == 0");
  }
  requireThat(ret == Z_STREAM_END, site.file, site.endLine, "ret == Z_STREAM_END");
  deflateEnd(&strm);
  return result;
}

std::string deflateOrEnd(std::string_view input, const DeflateSite& site) {
  std::optional<std::string> stream = deflateText(input, site);
  requireThat(stream.has_value(), site.file, site.streamLine, "ret == Z_OK");
  return std::move(*stream);
}
