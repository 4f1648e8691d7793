#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "keva/kevaDoc.h"
#include "postprocess/mapping.h"

// Finds what the storage overview says of a CoreStorage volume: the disk's own list knows only the
// physical volume, the overview the logical one that it carries.
class CoreStorage {
 public:
  // The document must outlive this object.
  explicit CoreStorage(const kevaDoc& raw);

  struct Match {
    Item volume;
    bool logical;  // found by its physical volume: `volume` has a name of its own
  };

  // The first storage item that belongs to a volume of that name on a disk of that model; null when
  // there is none. A storage item belongs by its physical drive (the names and the model are equal)
  // or, when it has none, by its first physical volume (the names are equal and the medium's name
  // contains the model). Valid as long as this object.
  const Match* find(const std::string& volumeName, std::string_view diskModel) const;

 private:
  struct Candidate {
    Match match;
    std::string media;
  };

  std::unordered_map<std::string, std::vector<Candidate>> byVolumeName_;
};
