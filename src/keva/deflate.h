#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct z_stream_s;  // zlib's

// Where a compressed stream is made, for the text of a failed assertion. Places and lines are fixed
// names of the three checks, by which a report can be told whatever the version; they are not lines
// of today's files.
struct DeflateSite {
  const char* file;
  unsigned streamLine;  // "ret != Z_STREAM_ERROR"
  unsigned inputLine;   // "strm.avail_in == 0"
  unsigned endLine;     // "ret == Z_STREAM_END"
};

inline constexpr DeflateSite kMainSite{"main", 136, 144, 148};  // reserved, used by nothing
inline constexpr DeflateSite kDocumentSite{"keva/kevaDoc", 653, 661, 665};  // blobs, their indexes
inline constexpr DeflateSite kTagSite{"keva/tag", 356, 364, 368};       // sections within a blob
inline constexpr DeflateSite kFileSite{"keva/HUXfile", 290, 298, 302};  // raw data, file header

// Makes one zlib stream (RFC 1950, level 9) of what is written to it, in chunks of 16384 bytes. A
// stream that zlib cannot begin (it is out of memory) or does not bring to its end fails an
// assertion of `site` and ends the program: a snapshot is never cut short.
class Deflater {
 public:
  explicit Deflater(const DeflateSite& site);
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;
  ~Deflater();

  void write(std::string_view piece) {
    if (piece.size() > room()) piece = writeChunks(piece);
    add(piece);
  }

  // Ends the stream and hands it over; nothing can be written after that.
  std::string finish();

 private:
  std::size_t room() const { return chunk_.size() - filled_; }
  void add(std::string_view fitting) {  // to the chunk
    std::copy(fitting.begin(), fitting.end(), chunk_.data() + filled_);
    filled_ += fitting.size();
  }
  std::string_view writeChunks(std::string_view piece);  // returns its end, which fits
  void deflateChunk(int flush);

  const DeflateSite& site_;
  std::unique_ptr<z_stream_s> stream_;
  std::vector<char> chunk_;  // what waits for more
  std::size_t filled_ = 0;   // bytes of it
  std::string result_;
};

// A whole text as one stream.
std::string deflateOrEnd(std::string_view input, const DeflateSite& site);
