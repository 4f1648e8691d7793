#pragma once

#include <optional>
#include <string>
#include <string_view>

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

// `input` as one zlib stream (RFC 1950, level 9), fed in chunks of 16384 bytes. Nothing when zlib
// cannot be initialised (it is out of memory). A stream that zlib does not bring to its end fails
// an assertion of `site` and ends the program: a snapshot is never cut short.
std::optional<std::string> deflateText(std::string_view input, const DeflateSite& site);

// The same for what goes into a file: ends the program also when zlib cannot be initialised.
std::string deflateOrEnd(std::string_view input, const DeflateSite& site);
