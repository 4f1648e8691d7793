#pragma once

#include <string>
#include <string_view>

// Chooses the file of a snapshot: "NAME_ADDRESS.hux" in the current directory, or the first of
// "NAME_ADDRESS(1).hux", "NAME_ADDRESS(2).hux" and so on that does not exist yet.

// `name` in upper case (ASCII letters), cut where a file name would become too long,
// `hardwareAddress` without its dashes. What cannot stand in the name of a file becomes "_": "/",
// so that no name leads out of the directory, and control characters.
std::string snapshotStem(std::string_view name, std::string_view hardwareAddress);

// The path of the first free name, claimed by creating it, empty, in one step that follows no link
// and overwrites nothing: a file that appears meanwhile makes it try the next number. When the
// directory takes no file, the path is returned all the same: saving to it will fail and tell.
std::string claimSnapshotPath(const std::string& stem);
