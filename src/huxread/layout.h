#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "huxread/header.h"
#include "huxread/result.h"

// Where things are in a snapshot file; docs/hux-format.md draws it. The bytes may come from anyone:
// every offset and every length is checked before it is used, and nothing inflates without a limit.

namespace huxread {

// Limits, in bytes. A debug file of a large machine holds a report of 200 MB, in 20 MB of file; a
// hundred times the usual header has 20 kB. What a hostile file can make a program hold is the file
// and one text, which while it grows takes up to twice its size.
inline constexpr std::size_t kMaxFileSize = std::size_t{512} << 20;
inline constexpr std::size_t kMaxTextSize = std::size_t{512} << 20;
inline constexpr std::size_t kMaxHeaderSize = std::size_t{1} << 20;

// The last bytes of the file: offset of the header, version, compressed flag, magic.
inline constexpr std::size_t kTrailerSize = 14;
inline constexpr std::string_view kMagic = "HUX!";

// The last bytes of a document's block: not sectioned, compressed, magic.
inline constexpr std::string_view kBlockMagic = "KEVA";
inline constexpr std::string_view kBlockTrailer("\0\1KEVA", 6);

struct Layout {
  std::string headerText;            // as the file states it
  std::vector<Section> sections;     // by increasing number
  std::vector<std::string> remarks;  // those of the header, and bytes that belong to no section
};

// Fails when the trailer is not that of a snapshot file, when it leads to no readable header, and
// when sections overlap or do not lie before the header.
Result<Layout> readLayout(std::string_view file);

// The same with a header that was found some other way, and stands at byte `dataSize` of its file.
Result<Layout> layOut(std::string headerText, std::size_t dataSize);

// The zlib stream in the stored bytes of a section. Documents stand in a block, and so does an
// unknown section that ends like one.
Result<std::string_view> unwrapSection(SectionType type, std::string_view stored);

}  // namespace huxread
