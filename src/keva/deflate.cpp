#include "keva/deflate.h"

#include <zlib.h>

#include <utility>

#include "base/assertion.h"

namespace {

constexpr std::size_t kChunk = 16384;  // bytes, of input and of output
constexpr int kLevel = 9;

}  // namespace

Deflater::Deflater(const DeflateSite& site)
    : site_(site), stream_(std::make_unique<z_stream_s>()), chunk_(kChunk) {
  requireThat(deflateInit(stream_.get(), kLevel) == Z_OK, site.file, site.streamLine,
              "ret == Z_OK");
}

Deflater::~Deflater() {
  deflateEnd(stream_.get());
}

std::string_view Deflater::writeChunks(std::string_view piece) {
  // A chunk is not deflated as soon as it is full: the last one ends the stream, and it has
  // something in it.
  while (piece.size() > room()) {
    const std::string_view fitting = piece.substr(0, room());
    add(fitting);
    piece.remove_prefix(fitting.size());
    deflateChunk(Z_NO_FLUSH);
  }
  return piece;
}

std::string Deflater::finish() {
  deflateChunk(Z_FINISH);
  return std::move(result_);
}

void Deflater::deflateChunk(int flush) {
  char output[kChunk];
  stream_->next_in = reinterpret_cast<Bytef*>(chunk_.data());
  stream_->avail_in = static_cast<uInt>(filled_);
  int ret = Z_OK;
  do {
    stream_->next_out = reinterpret_cast<Bytef*>(output);
    stream_->avail_out = kChunk;
    ret = deflate(stream_.get(), flush);
    requireThat(ret != Z_STREAM_ERROR, site_.file, site_.streamLine, "ret != Z_STREAM_ERROR");
    result_.append(output, kChunk - stream_->avail_out);
  } while (stream_->avail_out == 0);
  requireThat(stream_->avail_in == 0, site_.file, site_.inputLine, "strm.avail_in == 0");
  if (flush == Z_FINISH) {
    requireThat(ret == Z_STREAM_END, site_.file, site_.endLine, "ret == Z_STREAM_END");
  }
  filled_ = 0;
}

std::string deflateOrEnd(std::string_view input, const DeflateSite& site) {
  Deflater deflater(site);
  deflater.write(input);
  return deflater.finish();
}
