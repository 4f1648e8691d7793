#include "redact/redact.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <string>

#include "base/formatString.h"
#include "command.h"
#include "files.h"
#include "output.h"
#include "platform/host.h"

using redact::Kind;
using redact::Redacted;

namespace {

std::string allKinds() {
  std::string names;
  for (const auto& kind : redact::kindNames()) (names += names.empty() ? "" : ", ") += kind.name;
  return names;
}

std::string namesOf(const std::set<Kind>& kinds) {
  std::string names;
  for (const Kind kind : kinds) (names += names.empty() ? "" : ", ") += redact::nameOf(kind);
  return names;
}

// Nothing after a message when there is no such kind.
std::optional<std::set<Kind>> keptKinds(const std::vector<std::string>& names) {
  std::set<Kind> kinds;
  for (const std::string& name : names) {
    const auto kind = redact::findKind(name);
    if (!kind) {
      printMessage(name, "there is no such kind; the kinds are " + allKinds());
      return std::nullopt;
    }
    kinds.insert(*kind);
  }
  return kinds;
}

void printCounts(const Redacted& result) {
  printOutput("kind              values  places\n");
  for (std::size_t i = 0; i < result.counts.size(); ++i) {
    const auto& [values, places] = result.counts[i];
    const std::string name(redact::kindNames()[i].name);
    if (values > 0) printOutput(formatString("%-16s  %6zu  %6zu\n", name.c_str(), values, places));
    const std::size_t kept = result.kept[i].values;
    if (kept > 0) printOutput(formatString("%-16s  %6zu    kept\n", name.c_str(), kept));
  }
}

template <typename Words>
void printWords(const std::string& path, const std::string& remark, const Words& words) {
  std::string list;
  for (const std::string& word : words) (list += list.empty() ? "" : ", ") += '"' + word + '"';
  if (!list.empty()) printMessage(path, remark + list);
}

// What of it stays in the file, or may.
void printRemarks(const std::string& path, const Redacted& result, const std::set<Kind>& kept) {
  if (!kept.empty()) printMessage(path, "kept: " + namesOf(kept));
  printWords(path, "too common, short or long to be replaced anywhere but in their own places: ",
             result.common);
  printWords(path, "replaced as parts of names, wherever they stood: ", result.parts);
  printWords(path, "left, being what every Mac has: ", result.everybodys);
  printWords(path, "left, being tokens already: ", result.tokens);
}

std::string mapOf(const Redacted& result) {
  std::string map;
  for (const auto& [text, token] : result.pairs) map += show::onOneLine(text) + "\t" + token + "\n";
  return map;
}

std::string fileName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);  // all of it without one
}

// Whether both name one file, which has to be there, or one that is to be made.
bool isSame(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  if (stat(a.c_str(), &first) != 0 || stat(b.c_str(), &second) != 0) return a == b;
  return S_ISREG(first.st_mode) && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// Whether a file that is to be written is another one of this command's, after a message: neither
// the file itself nor the result may be lost.
bool writesOver(const Arguments& arguments) {
  const struct {
    const std::string& path;
    const std::string& other;
    const char* remark;
  } kPairs[] = {
      {arguments.output, arguments.file,   "is the file itself, which would be lost"},
      {arguments.map,    arguments.file,   "is the file itself, which would be lost"},
      {arguments.map,    arguments.output, "cannot be both the new file and its map"},
  };
  const auto* const found = std::ranges::find_if(
      kPairs, [](const auto& pair) { return !pair.path.empty() && isSame(pair.path, pair.other); });
  if (found == std::end(kPairs)) return false;
  printMessage(found->path, found->remark);
  return true;
}

// kDone when the result may be handed on, else a code after a message.
int check(const Arguments& arguments, const Redacted& result) {
  if (!result.inName.empty()) {
    printMessage(arguments.output, "the name holds a secret of the file (" +
                                       namesOf(result.inName) + "); choose another one");
    return kTrouble;
  }
  if (result.left.empty()) return kDone;
  printMessage(arguments.file,
               "nothing is written: not every " + namesOf(result.left) + " could be replaced");
  return kNo;
}

// The map first: what cannot be told apart later is not written.
int write(const Arguments& arguments, const Redacted& result) {
  if (!arguments.map.empty()) {
    const int code = writeFile(arguments.map, mapOf(result), arguments.force);
    if (code != kDone) return code;
  }
  const int code = writeFile(arguments.output, result.file, arguments.force);
  struct stat status {};
  const bool made = !arguments.map.empty() && stat(arguments.map.c_str(), &status) == 0;
  if (code != kDone && made && S_ISREG(status.st_mode)) unlink(arguments.map.c_str());
  return code;
}

}  // namespace

int runRedact(const Arguments& arguments) {
  const std::string& path = arguments.file;
  if (arguments.output.empty() && !arguments.dryRun) {
    printMessage(path, "-o has to name the new file");
    return kTrouble;
  }
  if (writesOver(arguments)) return kTrouble;
  const auto kept = keptKinds(arguments.kept);
  if (!kept) return kTrouble;
  const auto file = openFile(path);
  if (!file) {
    printMessage(path, file.error().message);
    return kTrouble;
  }
  const auto host = platform::makeHost();
  const auto result = redact::redact(*file, *host, *kept, fileName(arguments.output));
  if (!result) {
    printMessage(path, result.error().message);
    return kTrouble;
  }
  printRemarks(path, *result, *kept);
  if (arguments.dryRun) printCounts(*result);
  const int code = check(arguments, *result);
  return code != kDone || arguments.dryRun ? code : write(arguments, *result);
}
