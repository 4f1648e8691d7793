#pragma once

#include <string>
#include <string_view>

// The file of a snapshot: "NAME_ADDRESS.hux" in the current directory, or the first of
// "NAME_ADDRESS(1).hux", "NAME_ADDRESS(2).hux" and so on that does not exist yet.

// `name` in upper case (ASCII letters), cut where a file name would become too long,
// `hardwareAddress` without its dashes. What cannot stand in the name of a file becomes "_": "/",
// so that no name leads out of the directory, and control characters.
std::string snapshotStem(std::string_view name, std::string_view hardwareAddress);

struct SavedFile {
  std::string path;  // also of a file that could not be saved: the name that was tried last
  bool saved = false;
};

// Creates the file of the first free name, in one step that follows no link and overwrites nothing
// (a file that appears meanwhile makes it try the next number), and writes the image through that
// very descriptor. The file is there whole or not at all: signals that end the run wait until it is
// written, and where it cannot be written to its end (a full disk) it is removed.
SavedFile saveSnapshotFile(const std::string& stem, std::string_view image);
