#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "machine/cleanText.h"
#include "machine/quantity.h"
#include "machine/snapshot/item.h"
#include "machine/snapshot/sections.h"

namespace machine::snapshot {

namespace {

constexpr std::size_t kDisksTable = tableAt("disks");
constexpr std::size_t kVolumesTable = tableAt("volumes");

constexpr Line kDiskLines[] = {
    {"serial",    {"serial"},               stated},
    {"model",     {"model"},                text  },
    {"interface", {"interface"},            text  },
    {"firmware",  {"fw-rev", "bcd-device"}, text  },
};
constexpr auto kDisk = cells("disks", kDiskLines);
constexpr Line kVolumeLines[] = {
    {"mount_point", {"mount-point"}, text},
    {"bsd_name",    {"bsd-name"},    text},
    {"file_system", {"file-sys"},    text},
};
constexpr auto kVolume = cells("volumes", kVolumeLines);

Value capacity(const TagView& tag) {
  const Value bytes = blocks(tag, "size");
  return bytes == Value(std::int64_t{0}) ? Value() : bytes;
}

// Which disk each volume is on: the volumes stand in the order of the disks, which say how many of
// them are theirs.
class Owners {
 public:
  void add(const Value& model, std::int64_t volumes) {
    if (volumes > 0) disks_.push_back({model, volumes});
  }

  Value next() {
    if (at_ == disks_.size()) return {};
    Disk& disk = disks_[at_];
    if (--disk.volumes == 0) ++at_;
    return disk.model;
  }

 private:
  struct Disk {
    Value model;
    std::int64_t volumes;
  };
  std::vector<Disk> disks_;
  std::size_t at_ = 0;
};

// A drive ("CD:N") says its model only, and may as well be a disk without S.M.A.R.T.: its kind is
// not known.
Owners readDisks(const TagView& disks, TableData& table) {
  Owners owners;
  table.recorded = true;
  for (auto disk = disks.firstChild(); disk; disk = disk->nextSibling()) {
    Row row = emptyRow(kDisksTable);
    write(kDisk, *disk, row);
    row[columnAt("disks", "size_bytes")] = capacity(*disk);
    if (disk->name().starts_with("Removable:")) {
      // Its model is what an extra command said of the medium; everything else calls it by its
      // name.
      row[columnAt("disks", "model")] = textValue(disk->value());
      row[columnAt("disks", "kind")] = "removable";
    }
    owners.add(row[columnAt("disks", "model")],
               wholeNumber(disk->attribute("partitions").value_or("")).value_or(0));
    if (std::ranges::any_of(row, isKnown)) table.rows.push_back(std::move(row));
  }
  return owners;
}

void readVolume(const TagView& volume, const Value& diskModel, Row& row) {
  write(kVolume, volume, row);
  row[columnAt("volumes", "name")] = textValue(volume.value());
  row[columnAt("volumes", "size_bytes")] = capacity(volume);
  row[columnAt("volumes", "free_bytes")] = blocks(volume, "free");
  row[columnAt("volumes", "disk_model")] = diskModel;
  if (const auto fileSystem = volume.property("file-sys")) {
    row[columnAt("volumes", "file_system")] = textValue(*fileSystem);
  }
  if (volume.property("kind") == "encrypted") row[columnAt("volumes", "encrypted")] = true;
}

}  // namespace

void readStorage(const TagView& top, Description& machine) {
  Owners owners;
  if (const auto disks = find(top, {"Storage", "Physical-disks"})) {
    owners = readDisks(*disks, machine[kDisksTable]);
  }
  const auto volumes = find(top, {"Storage", "Logical-disks"});
  if (!volumes) return;
  // Partitions that are no volumes have neither free space nor a place: those that only hold a
  // container of volumes, which is all that is listed of some Macs, and those for starting it.
  TableData& table = machine[kVolumesTable];
  forEach(*volumes, "partition:", [&](const TagView& volume) {
    const Value model = owners.next();
    if (!volume.attribute("free") && !volume.attribute("mount-point")) return;
    table.recorded = true;
    readVolume(volume, model, addRow(table, kVolumesTable));
  });
}

}  // namespace machine::snapshot
