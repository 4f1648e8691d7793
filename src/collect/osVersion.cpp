#include "collect/osVersion.h"

#include <cstdlib>
#include <iterator>

#include "base/text.h"

namespace {

constexpr const char* kNames[] = {
    "Mac OS X v10.0 (Cheetah)",      "Mac OS X v10.1 (Puma)",  "Mac OS X v10.2 (Jaguar)",
    "Mac OS X v10.3 (Panther)",      "Mac OS X v10.4 (Tiger)", "Mac OS X v10.5 (Leopard)",
    "Mac OS X v10.6 (Snow Leopard)", "Mac OS X v10.7 (Lion)",  "OS X v10.8 (Mountain Lion)",
    "OS X v10.9 (Mavericks)",        "OS X v10.10 (Yosemite)", "OS X v10.11 (El Capitan)",
    "macOS v10.12 (Sierra)",
};

std::string tail(const std::string& text, std::size_t from) {
  return from < text.size() ? text.substr(from) : "";
}

std::string updateOf(const std::string& version) {
  if (CountOccurrences(version, ".") != 2) return "";
  const std::size_t start = version.rfind('.') + 1;
  const std::size_t blank = version.rfind(' ');
  return version.substr(start, blank < start ? std::string::npos : blank - start);
}

}  // namespace

OsVersion OsVersion::parse(const std::string& text) {
  constexpr std::size_t kMajor = 3;  // "10."
  OsVersion os;
  std::string minor;
  for (const std::string& family : {std::string("macOS "), std::string("OS X ")}) {
    const std::size_t found = text.find(family.substr(0, family.size() - 1));
    if (found == std::string::npos) continue;
    os.version = tail(text, found + family.size());
    minor = tail(text, found + family.size() + kMajor);
    break;
  }
  os.minor = std::atoi(minor.c_str());
  const bool named = os.minor >= 0 && static_cast<std::size_t>(os.minor) < std::size(kNames);
  os.name = named ? kNames[os.minor] : text;
  os.update = updateOf(os.version);
  return os;
}
