#include "huxread/container.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "base/formatString.h"
#include "huxread/inflate.h"

namespace huxread {

namespace {

// The last bytes of the file: offset of the header, version, compressed flag, magic.
constexpr std::size_t kTrailerSize = 14;
constexpr std::size_t kVersionAt = 8;
constexpr std::size_t kCompressedAt = 9;
constexpr std::string_view kMagic = "HUX!";
constexpr unsigned kVersion = 3;

// The last bytes of a document's block: not sectioned, compressed, magic.
constexpr std::string_view kBlockMagic = "KEVA";
constexpr std::string_view kBlockTrailer("\0\1KEVA", 6);

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

struct Trailer {
  std::size_t headerOffset;  // at most the offset of the trailer
  bool compressed;
};

unsigned byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

// The 8-byte number that `bytes` begin with.
std::uint64_t readNumber(std::string_view bytes, bool lowestFirst) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < 8; ++i) number = number << 8 | byteAt(bytes, lowestFirst ? 7 - i : i);
  return number;
}

Result<Trailer> readTrailer(std::string_view file) {
  if (file.size() < kTrailerSize) {
    return Error{formatString("not a snapshot file: only %zu bytes long", file.size())};
  }
  if (!file.ends_with(kMagic)) return Error{"not a snapshot file: bad magic"};
  const std::size_t end = file.size() - kTrailerSize;
  const std::string_view trailer = file.substr(end);
  const unsigned version = byteAt(trailer, kVersionAt);
  if (version != kVersion) {
    return Error{
        formatString("trailer: version %u of the format, only %u is known", version, kVersion)};
  }
  const unsigned compressed = byteAt(trailer, kCompressedAt);
  if (compressed > 1) {
    return Error{formatString("trailer: the compressed flag is %u, neither 0 nor 1", compressed)};
  }
  // At most one order gives an offset within the file: files are shorter than 4 GiB.
  const std::uint64_t usual = readNumber(trailer, true);
  const std::uint64_t swapped = readNumber(trailer, false);
  if (usual > end && swapped > end) {
    return Error{formatString("trailer: header offset %" PRIu64 " lies beyond the data (%zu bytes)",
                              usual, end)};
  }
  return Trailer{static_cast<std::size_t>(std::min(usual, swapped)), compressed == 1};
}

Result<std::string> readHeader(std::string_view stored, bool compressed) {
  if (compressed) {
    Result<std::string> text = inflateText(stored, kMaxHeaderSize);
    if (!text) return Error{"header: " + text.error().message};
    return text;
  }
  if (stored.size() > kMaxHeaderSize) {
    return Error{formatString("header: has more than %zu bytes", kMaxHeaderSize)};
  }
  return std::string(stored);
}

// What is wrong with where the sections lie, if anything.
std::optional<Error> findMisplaced(const std::vector<Section>& sections, std::size_t dataSize) {
  std::vector<const Section*> byOffset;
  for (const Section& section : sections) {
    if (section.offset > dataSize) {
      return Error{formatString("section %u: offset %u lies beyond the data (%zu bytes)",
                                section.number, section.offset, dataSize)};
    }
    if (section.length > dataSize - section.offset) {
      return Error{
          formatString("section %u: length %u from offset %u reaches beyond the data (%zu bytes)",
                       section.number, section.length, section.offset, dataSize)};
    }
    if (section.length > 0) byOffset.push_back(&section);
  }
  std::ranges::sort(byOffset, {}, &Section::offset);
  const auto overlap =
      std::ranges::adjacent_find(byOffset, [](const Section* left, const Section* right) {
        return right->offset - left->offset < left->length;
      });
  if (overlap == byOffset.end()) return std::nullopt;
  return Error{
      formatString("section %u: overlaps section %u", overlap[1]->number, overlap[0]->number)};
}

// The zlib stream within a document's block.
Result<std::string_view> unwrapBlock(std::string_view block) {
  if (block.size() < kBlockTrailer.size() || !block.ends_with(kBlockMagic)) {
    return Error{"not a compressed document: bad magic"};
  }
  if (!block.ends_with(kBlockTrailer)) {
    const std::string_view flags = block.substr(block.size() - kBlockTrailer.size());
    return Error{formatString("not a compressed document: layout flags %u, %u instead of 0, 1",
                              byteAt(flags, 0), byteAt(flags, 1))};
  }
  return block.substr(0, block.size() - kBlockTrailer.size());
}

}  // namespace

Container::Container(std::string bytes, std::string headerText, std::vector<Section> sections)
    : bytes_(std::move(bytes)),
      headerText_(std::move(headerText)),
      sections_(std::move(sections)) {}

Result<Container> Container::open(const std::string& path) {
  const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
  if (!file) return Error{std::strerror(errno)};
  std::string bytes;
  std::array<char, 65536> chunk{};
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file.get())) {
    bytes.append(chunk.data(), count);
    if (bytes.size() > kMaxFileSize) break;  // parse says so
  }
  if (std::ferror(file.get())) return Error{std::strerror(errno)};
  return parse(std::move(bytes));
}

Result<Container> Container::parse(std::string bytes) {
  if (bytes.size() > kMaxFileSize) {
    return Error{formatString("not a snapshot file: has more than %zu bytes", kMaxFileSize)};
  }
  const std::string_view file = bytes;
  const Result<Trailer> trailer = readTrailer(file);
  if (!trailer) return trailer.error();
  const std::size_t headerLength = file.size() - kTrailerSize - trailer->headerOffset;
  Result<std::string> header =
      readHeader(file.substr(trailer->headerOffset, headerLength), trailer->compressed);
  if (!header) return header.error();
  Result<std::vector<Section>> sections = parseHeader(*header);
  if (!sections) return sections.error();
  const std::optional<Error> misplaced = findMisplaced(*sections, trailer->headerOffset);
  if (misplaced) return *misplaced;
  return Container(std::move(bytes), std::move(*header), std::move(*sections));
}

Result<std::string> Container::text(std::uint32_t number) const {
  const auto section = std::ranges::lower_bound(sections_, number, {}, &Section::number);
  if (section == sections_.end() || section->number != number) {
    return Error{formatString("there is no section %u", number)};
  }
  const std::string_view data = std::string_view(bytes_).substr(section->offset, section->length);
  const Result<std::string_view> stream =
      section->type == SectionType::CustomData ? data : unwrapBlock(data);
  Result<std::string> text = stream ? inflateText(*stream, kMaxTextSize) : stream.error();
  if (!text) return Error{formatString("section %u: ", number) + text.error().message};
  return text;
}

}  // namespace huxread
