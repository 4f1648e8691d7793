#pragma once

#include <zlib.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

// The header of a file with sections one behind the other: of a type, of so many bytes.
inline std::string headerOf(const std::vector<std::pair<std::string, std::size_t>>& sections) {
  std::string header = "[H]\ncount=" + std::to_string(sections.size()) + "\nsnapshotcount=0\n";
  std::size_t offset = 0;
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const auto& [type, length] = sections[i];
    header += "[" + std::to_string(i) + "]\noffset=" + std::to_string(offset) +
              "\nlength=" + std::to_string(length) + "\ntype=" + type + "\n";
    offset += length;
  }
  return header;
}

// A file with one section of that type.
inline std::string fileOfOne(const std::string& type, const std::string& data) {
  return huxFile(data, headerOf({
                           {type, data.size()}
  }));
}
