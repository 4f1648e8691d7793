#include "postprocess/coreStorage.h"

CoreStorage::CoreStorage(const kevaDoc& raw) {
  const auto add = [this](const Item& storage, const Item& named, const Item& media, bool logical) {
    if (!media.has("media_name") || !named.has("_name")) return;
    byVolumeName_[named.text("_name")].push_back({
        {storage, logical},
        media.text("media_name")
    });
  };
  for (const Item& storage : items(raw, "SPStorageDataType")) {
    if (const Tag* drive = storage.child("physical_drive")) {
      add(storage, storage, Item(*drive), false);
      continue;
    }
    const std::vector<Item> volumes = nestedItems(storage, "com.apple.corestorage.pv");
    if (!volumes.empty()) add(storage, volumes.front(), volumes.front(), true);
  }
}

const CoreStorage::Match* CoreStorage::find(const std::string& volumeName,
                                            std::string_view diskModel) const {
  const auto named = byVolumeName_.find(volumeName);
  if (named == byVolumeName_.end()) return nullptr;
  for (const Candidate& candidate : named->second) {
    const bool same = candidate.match.logical ? candidate.media.find(diskModel) != std::string::npos
                                              : candidate.media == diskModel;
    if (same) return &candidate.match;
  }
  return nullptr;
}
