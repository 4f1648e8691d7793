#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "keva/tag.h"

// A document: the tag tree below one named top tag, with its text form and its compressed blob.
class kevaDoc {
 public:
  // `nativeByteOrder` decides how the sectioned blobs store the offset of their index: in the
  // machine's order, else most significant byte first.
  kevaDoc(bool nativeByteOrder, std::string_view topName);
  kevaDoc(const kevaDoc& other);  // deep
  kevaDoc& operator=(const kevaDoc&) = delete;
  ~kevaDoc() = default;

  // The nameless root; its only child is the top tag.
  Tag& holder() { return holder_; }
  const Tag& holder() const { return holder_; }

  Tag& top() { return *holder_.childAt(0); }
  const Tag& top() const { return *holder_.childAt(0); }

  // Tag::setPath on the holder, so that a path begins with "/" to start at the top tag. Returns the
  // attribute, to which further properties can be added, or null as setPath does.
  TagAttribute* set(std::string_view path, TagValue value, const char* propKey = nullptr,
                    const char* propValue = nullptr);

  // Room that holds the text form, in bytes: Tag::textSize with slack. It counts the top tag alone:
  // a document that was given a second one, by a path without its leading "/", needs more.
  unsigned textSize() const;

  // Tag::writeText on the holder: the whole text form with its header line.
  unsigned writeText(char* buffer, unsigned offset, bool noEndMark, bool noChildren) const;

  // The document as a block of bytes. Snapshot files use (false, true) alone; docs/hux-format.md
  // shows the four layouts. Sections, where there are any, are "Root" (the top tag without its
  // children) and one for each child of the top tag.
  //
  //   sectioned  compressed
  //   false      true        zlib stream of the text form, 0, 1, "KEVA"
  //   false      false       text form, zero bytes up to textSize()
  //   true       false       text form without its last line, index text, offset of the index
  //                          (4 bytes), 1, 0; lengths in the index are Tag::textSize
  //   true       true        zlib stream of every section, zlib stream of the index text, offset of
  //                          the index (4 bytes), 1, 1; lengths in the index are the compressed
  //                          ones
  std::string pack(bool sectioned, bool compressed);

 private:
  struct IndexEntry {
    std::string name;
    unsigned offset;   // bytes from the start of the block
    unsigned length;   // bytes
    std::string data;  // the section's bytes; empty in the uncompressed layout
  };

  std::string text(bool noEndMark) const;
  void addToIndex(std::string_view name, unsigned length, std::string data);
  std::string indexText() const;
  std::string packPlain(bool compressed) const;
  std::string packSectioned(bool compressed);

  std::vector<IndexEntry> sectionIndex_;  // of the last sectioned block
  bool nativeByteOrder_;
  Tag holder_;
};
