#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "huxread/container.h"
#include "huxread/document.h"
#include "machine/profiler/profile.h"
#include "platform/host.h"

namespace fleet {

// One entry of a document of a file.
struct Entry {
  const char* document;  // "snapshot", "assetinfo", "customdata"
  std::string path;
  std::string value;
};

// Every entry of every document of a file, one after the other. Paths are those of inspect's
// lookUpPath: "/OS/os:1/version" an attribute, "/OS/os:1/" the value of a tag itself,
// "/OS/os:1/version~unit" a property. In the profiler's report of a debug file, whose entries are
// those of its items, "/SPUSBDataType/1/_items/2/_name": dictionaries by key, items of a data type
// and elements of arrays by number, from 1. Sections that cannot be read have none.
class Entries {
 public:
  explicit Entries(huxread::Container file);
  // The walk points into itself.
  Entries(const Entries&) = delete;
  Entries& operator=(const Entries&) = delete;
  ~Entries() = default;

  // The next one; null at the end. Valid until the next call.
  const Entry* next();

 private:
  struct Level {
    huxread::TagView tag;
    std::size_t pathSize;  // of the path that leads to its parent
  };

  bool refill();
  bool openSection();
  void addTag();
  void addDataType();
  void addProperties(const std::string& path, std::span<const huxread::Property> properties);
  void addValue(const std::string& path, const platform::PropertyList& value);
  void add(const std::string& path, std::string_view value);

  huxread::Container file_;
  std::size_t section_ = 0;    // the next one
  const char* document_ = "";  // that is walked
  std::optional<huxread::Document> tree_;
  std::vector<Level> levels_;  // of the tree; the tag that comes next is the last one's
  std::string path_;
  std::unique_ptr<platform::Host> host_;
  std::string report_;  // of the profiler
  std::optional<machine::Profile> profile_;
  std::vector<std::string> dataTypes_;  // that come, the next one last
  std::vector<Entry> waiting_;
  std::size_t given_ = 0;  // of those
};

}  // namespace fleet
