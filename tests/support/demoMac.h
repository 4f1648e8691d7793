#pragma once

#include <filesystem>
#include <fstream>
#include <string>

// The built agent on recorded Macs, as shell lines.

inline const std::string kAgent = "'" ORBEXAGENT "' ";

// Starts what follows on a recorded Mac, with the commands of ./bin in front of its own.
inline std::string playing(const std::string& recording) {
  return "'" PROJECT_FOLDER "/demo/play' '" + recording +
         "' sh -c 'PATH=$PWD/bin:$PATH; exec \"$@\"' sh ";
}
inline const std::string kMac = playing(PROJECT_FOLDER "/demo/mac");

inline void writeScript(const std::string& file, const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  std::ofstream(file) << "#!/bin/sh\n" << text;
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}
