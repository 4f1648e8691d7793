#pragma once

#include <zlib.h>

#include <string>
#include <string_view>

// Snapshot files put together byte by byte, right or wrong as a test wants them.

inline std::string zlibStream(std::string_view text) {
  uLongf size = compressBound(text.size());
  std::string stream(size, '\0');
  compress(reinterpret_cast<Bytef*>(stream.data()), &size,
           reinterpret_cast<const Bytef*>(text.data()), text.size());
  stream.resize(size);
  return stream;
}

inline std::string blob(std::string_view text) {
  return zlibStream(text) + std::string("\0\1KEVA", 6);
}

// `header` as it is stored, `offset` as the trailer states it, lowest byte first.
inline std::string huxFile(const std::string& data, const std::string& header, bool compressed,
                           std::size_t offset) {
  std::string file = data + header;
  for (unsigned shift = 0; shift < 64; shift += 8) file += static_cast<char>(offset >> shift & 255);
  file += '\3';
  file += compressed ? '\1' : '\0';
  return file + "HUX!";
}

// A right trailer around any sections and any header text, left as it is.
inline std::string huxFile(const std::string& data, const std::string& header) {
  return huxFile(data, header, false, data.size());
}

// A file with one section of that type.
inline std::string fileOfOne(const std::string& type, const std::string& data) {
  return huxFile(data, "[H]\ncount=1\nsnapshotcount=0\n[0]\noffset=0\nlength=" +
                           std::to_string(data.size()) + "\ntype=" + type + "\n");
}
