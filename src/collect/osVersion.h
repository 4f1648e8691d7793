#pragma once

#include <string>

// What "os_version" tells ("macOS 10.12.6 (16G29)").
struct OsVersion {
  int minor = 0;        // 12; 0 when the text is of another shape
  std::string name;     // "macOS v10.12 (Sierra)"
  std::string version;  // "10.12.6 (16G29)"; "" when the text is of another shape
  std::string update;   // "6"; "" when there is none

  // Minor version 0, with its name, for a text of another shape; from 13 on the name is the whole
  // text. A system numbered from 11 on is read the same way: its second number counts as minor.
  static OsVersion parse(const std::string& text);
};
