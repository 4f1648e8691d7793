#include "huxread/layout.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/formatString.h"
#include "huxread/inflate.h"

namespace huxread {

namespace {

// In the trailer.
constexpr std::size_t kVersionAt = 8;
constexpr std::size_t kCompressedAt = 9;
constexpr unsigned kVersion = 3;

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

void remarkGap(std::size_t from, std::size_t to, std::vector<std::string>& remarks) {
  if (from == to) return;
  remarks.push_back(
      formatString("bytes %zu to %zu of the file belong to no section", from, to - 1));
}

// What is wrong with where the sections lie, if anything. What lies between them is remarked.
std::optional<Error> findMisplaced(const std::vector<Section>& sections, std::size_t dataSize,
                                   std::vector<std::string>& remarks) {
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
  std::size_t end = 0;  // of the sections before
  for (std::size_t i = 0; i < byOffset.size(); ++i) {
    const Section& section = *byOffset[i];
    if (section.offset < end) {
      return Error{
          formatString("section %u: overlaps section %u", section.number, byOffset[i - 1]->number)};
    }
    remarkGap(end, section.offset, remarks);
    end = std::size_t{section.offset} + section.length;
  }
  remarkGap(end, dataSize, remarks);
  return std::nullopt;
}

}  // namespace

Result<Layout> readLayout(std::string_view file) {
  if (file.size() > kMaxFileSize) {
    return Error{formatString("not a snapshot file: has more than %zu bytes", kMaxFileSize)};
  }
  const Result<Trailer> trailer = readTrailer(file);
  if (!trailer) return trailer.error();
  const std::size_t headerLength = file.size() - kTrailerSize - trailer->headerOffset;
  Result<std::string> text =
      readHeader(file.substr(trailer->headerOffset, headerLength), trailer->compressed);
  if (!text) return text.error();
  return layOut(std::move(*text), trailer->headerOffset);
}

Result<Layout> layOut(std::string headerText, std::size_t dataSize) {
  Result<Header> header = parseHeader(headerText);
  if (!header) return header.error();
  const std::optional<Error> misplaced = findMisplaced(header->sections, dataSize, header->remarks);
  if (misplaced) return *misplaced;
  return Layout{std::move(headerText), std::move(header->sections), std::move(header->remarks)};
}

Result<std::string_view> unwrapSection(SectionType type, std::string_view stored) {
  const bool document = stored.ends_with(kBlockMagic);
  if (type == SectionType::CustomData || (type == SectionType::Unknown && !document)) return stored;
  if (!document || stored.size() < kBlockTrailer.size()) {
    return Error{"not a compressed document: bad magic"};
  }
  if (!stored.ends_with(kBlockTrailer)) {
    const std::string_view flags = stored.substr(stored.size() - kBlockTrailer.size());
    return Error{formatString("not a compressed document: layout flags %u, %u instead of 0, 1",
                              byteAt(flags, 0), byteAt(flags, 1))};
  }
  return stored.substr(0, stored.size() - kBlockTrailer.size());
}

}  // namespace huxread
