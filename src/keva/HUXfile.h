#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "keva/kevaDoc.h"

// The snapshot file: sections, then a header that lists them, then 14 bytes that locate the header.
// docs/hux-format.md draws it.
class HUXfile {
 public:
  enum class SectionType : std::int32_t { AssetInfo = 0, Snapshot = 1, CustomData = 2 };

  // What is kept of a section. The flags record how its bytes were made; a file states none of
  // them.
  struct Section {
    SectionType type;
    bool raw;          // made from text, not from a document
    std::string data;  // as it stands in the file
    bool compressed;
    bool sectioned;
    std::unique_ptr<kevaDoc> document;  // null for raw data
    std::uint32_t offset = 0;           // bytes from the start of the file
  };

  // `nativeByteOrder`: the offset of the header is stored in the machine's order, else most
  // significant byte first.
  explicit HUXfile(bool nativeByteOrder) : nativeByteOrder_(nativeByteOrder) {}

  // Packs the document at once (kevaDoc::pack) and keeps it: the header speaks of its top tag.
  void addDocument(std::unique_ptr<kevaDoc> document, SectionType type, bool sectioned,
                   bool compressed);

  // Adds text as it was collected, compressed, as custom data.
  void addRawData(std::string_view text);

  bool hasRawData() const { return hasRawData_; }

  // In the order they were added.
  const std::vector<Section>& sections() const { return sections_; }

  // Length of the header text in bytes. Also gives every section its offset, which the header
  // states: call it before buildHeader, as buildImage does.
  std::size_t measureHeader();

  // The header text, or its zlib stream.
  std::string buildHeader(bool compress) const;

  // The whole file.
  std::string buildImage(bool compressHeader);

  // Writes the image to `path`, over what was there. False, and nothing written, when the file
  // cannot be opened for writing; what goes wrong after that is not noticed.
  bool save(const std::string& path, bool compressHeader);

 private:
  std::string headerText() const;

  std::vector<Section> sections_;
  bool nativeByteOrder_;
  bool hasRawData_ = false;
};
