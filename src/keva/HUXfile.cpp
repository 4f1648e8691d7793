#include "keva/HUXfile.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "base/bytes.h"
#include "base/formatString.h"
#include "keva/deflate.h"

namespace {

constexpr char kTrailerVersion = 3;
constexpr std::string_view kMagic = "HUX!";
constexpr std::size_t kTrailerSize = 14;  // offset of the header, version, compressed, magic

std::string timestampOf(const kevaDoc* document) {
  if (document == nullptr) return "";
  const TagAttribute* attribute = document->top().findAttribute("timestamp");
  const SharedText* text = attribute == nullptr ? nullptr : attribute->value().text();
  return text == nullptr ? "" : std::string(*text);
}

}  // namespace

void HUXfile::addDocument(std::unique_ptr<kevaDoc> document, SectionType type, bool sectioned,
                          bool compressed) {
  std::string data = document->pack(sectioned, compressed);
  sections_.push_back({type, false, std::move(data), compressed, sectioned, std::move(document)});
}

void HUXfile::addRawData(std::string_view text) {
  // By the definition of the record raw data counts as sectioned; the file does not say so.
  sections_.push_back(
      {SectionType::CustomData, true, deflateOrEnd(text, kFileSite), true, true, nullptr});
  hasRawData_ = true;
}

std::string HUXfile::headerText() const {
  const auto snapshots = std::ranges::count_if(sections_, [](const Section& section) {
    return section.document != nullptr && section.document->top().name() == "Snapshot";
  });
  std::string text =
      formatString("[H]\ncount=%zu\nsnapshotcount=%td\n", sections_.size(), snapshots);
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    const Section& section = sections_[i];
    const std::string place =
        formatString("[%zu]\noffset=%u\nlength=%zu\n", i, section.offset, section.data.size());
    switch (section.type) {
      case SectionType::AssetInfo:
        text += place + "type=assetinfo\n";
        break;
      case SectionType::Snapshot:
        text += place + "type=snapshot\ntimestamp=" + timestampOf(section.document.get()) +
                "\nsnaptype=mac:1\n";
        break;
      case SectionType::CustomData:
        text += place + "type=customdata\nID=rawdata\n";
        break;
    }
  }
  return text;
}

std::size_t HUXfile::measureHeader() {
  std::uint32_t offset = 0;
  for (Section& section : sections_) {
    section.offset = offset;
    offset += static_cast<std::uint32_t>(section.data.size());
  }
  return headerText().size();
}

std::string HUXfile::buildHeader(bool compress) const {
  std::string text = headerText();
  return compress ? deflateOrEnd(text, kFileSite) : text;
}

std::string HUXfile::buildImage(bool compressHeader) {
  std::size_t size = measureHeader() + kTrailerSize;
  for (const Section& section : sections_) size += section.data.size();
  std::string image;
  image.reserve(size);
  for (const Section& section : sections_) image += section.data;
  const std::uint64_t headerOffset = image.size();
  image += buildHeader(compressHeader);
  appendInteger(image, headerOffset, nativeByteOrder_);
  image.push_back(kTrailerVersion);
  image.push_back(compressHeader ? '\1' : '\0');
  image += kMagic;
  return image;
}

bool HUXfile::save(const std::string& path, bool compressHeader) {
  std::FILE* file = std::fopen(path.c_str(), "w");
  if (file == nullptr) return false;
  const std::string image = buildImage(compressHeader);
  std::fwrite(image.data(), 1, image.size(), file);
  std::fflush(file);
  std::fclose(file);
  return true;
}
