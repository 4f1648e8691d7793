#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/propertyList.h"

namespace platform {

// The standard output of a command that was started. Destroying it closes the output and waits for
// the command to end; how it ended is not reported.
class CommandOutput {
 public:
  virtual ~CommandOutput() = default;

  // Reads up to `size` bytes, waiting until that many are there or the output has ended (as
  // fread). 0 when nothing came.
  virtual std::size_t read(char* buffer, std::size_t size) = 0;

  // True once a read has met the end of the output (as feof).
  virtual bool atEnd() const = 0;
};

struct Process {
  std::int32_t pid;
  std::int32_t ppid;
  std::string name;  // the kernel's short command name, at most 16 bytes
};

struct Bundle {
  std::string path;   // of the bundle's folder, without a "/" at its end
  std::string name;   // its last component ("Media Viewer.plugin")
  PropertyList info;  // a dictionary: what was asked for of the information dictionary
};

// Everything that a scan may ask of the machine it runs on: the one door to it. Nothing here
// throws. Questions are answered one at a time, on the caller's thread.
class Host {
 public:
  virtual ~Host() = default;

  // Starts a shell command ("/bin/sh -c"), with this process's environment, standard input and
  // standard error, and its signals at their defaults. Null when it cannot be started.
  virtual std::unique_ptr<CommandOutput> startCommand(const std::string& command) = 0;

  // The value of an XML property list, whatever its kind. What stands behind "</plist>" is not
  // looked at. Of equal keys the last value counts, off the Mac in the place of the first. Integers
  // are NumberType::SInt64, zero SInt32, reals Float64.
  //
  // Nothing for a document that is refused: malformed XML, an undefined entity, a bare "&", a
  // comment within a text, an unknown element, bytes that are not UTF-8, a key without a value,
  // "<data/>", an integer beyond 64 bits or with anything behind its digits, a date of another form
  // than YYYY-MM-DDThh:mm:ssZ, arrays and dictionaries nested more than kMaxNesting deep.
  //
  // The platform's parser refuses the same, but takes years of other lengths, "&" in data,
  // references to NUL, UTF-16 and a lone byte A9. It also reads binary lists, refused when they
  // unfold to much more than their size, and old-style ones, which it may find in any text: look
  // whether the value is of the expected kind.
  //
  // The document is the host's then, which may parse it in place.
  virtual std::optional<PropertyList> parsePropertyList(std::string document) = 0;

  // The name the user gave the machine, any Unicode text as UTF-8; "" when unknown. Off the Mac
  // the network node name.
  virtual std::string computerName() = 0;

  // The kernel's process table in its own order, entries without a process (id 0) included; empty
  // when it cannot be read. A table that keeps growing while it is read is asked for three times.
  virtual std::vector<Process> processTable() = 0;

  // The bundles of a folder in the order the folder lists them: every entry that is a folder or
  // leads to one. Empty when the folder is missing. `keys` are those of the information dictionary
  // that are wanted: Bundle::info has the ones that are there, in the order of `keys`, unless their
  // values are arrays or dictionaries. On a Mac that dictionary may also come from a binary file.
  // Bytes of a name that are no UTF-8, which only other systems have, become U+FFFD.
  virtual std::vector<Bundle> bundles(const std::string& folder,
                                      std::span<const std::string_view> keys) = 0;

  // The present, in seconds since 2001-01-01 00:00:00 UTC.
  virtual double now() = 0;

  // A date, in the same seconds, in the local time zone by a pattern of Unicode TR 35, e.g.
  // "yyyyMMddHHmmss.000000 ZZ" or "yyyy-MM-dd", in ASCII and by the Gregorian calendar whatever the
  // user's region. Off the Mac those letters are all that is known.
  virtual std::string formatDate(double seconds, std::string_view pattern) = 0;

  static constexpr int kMaxNesting = 512;
};

// The host of the machine that this program runs on.
std::unique_ptr<Host> makeHost();

}  // namespace platform
