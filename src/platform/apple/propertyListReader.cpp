#include "platform/apple/propertyListReader.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "platform/apple/cfValue.h"
#include "platform/host.h"

namespace platform::apple {

namespace {

// Whether arrays and dictionaries are nested more than kMaxNesting deep, by the tags alone; what
// else is wrong is for the parser to say. Newer systems refuse such a document themselves, older
// ones end the process at one of some 50,000 levels: so it is not shown to them. Tags that are not
// in ASCII (UTF-16) are not seen here, nor are binary and old-style lists looked into.
bool isTooDeep(std::string_view document) {
  constexpr struct {
    std::string_view start;
    std::string_view end;
  } kMarkup[] = {
      {"<!--",      "-->"},
      {"<![CDATA[", "]]>"},
      {"<?",        "?>" },
      {"<",         ">"  },
  };
  // What holds the value counts too: the parser goes into it as into the others.
  constexpr std::string_view kContainers[] = {"array", "dict", "plist"};
  constexpr int kDeepest = Host::kMaxNesting + 1;
  int depth = 0;
  for (std::size_t at = document.find('<'); at != std::string_view::npos;
       at = document.find('<', at)) {
    const auto* markup = std::ranges::find_if(
        kMarkup, [rest = document.substr(at)](const auto& m) { return rest.starts_with(m.start); });
    const std::size_t start = at + markup->start.size();
    at = document.find(markup->end, start);
    if (at == std::string_view::npos) return false;  // the parser refuses it
    if (markup->end != ">") continue;

    const std::string_view tag = document.substr(start, at - start);
    const bool closes = tag.starts_with('/');
    const std::string_view name = tag.substr(closes ? 1 : 0);
    if (std::ranges::find(kContainers, name.substr(0, name.find_first_of(" \t\r\n/"))) ==
        std::end(kContainers)) {
      continue;
    }
    if (closes && --depth <= 0) return false;  // what stands behind the value is not read
    if (!closes && !tag.ends_with('/') && ++depth > kDeepest) return true;
  }
  return false;
}

// It reads binary and old-style lists as well, like its successor. Deprecated since 10.10, exported
// by every system since.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
Owned<CFPropertyListRef> parse(CFDataRef document) {
  return Owned<CFPropertyListRef>(
      CFPropertyListCreateFromXMLData(nullptr, document, kCFPropertyListImmutable, nullptr));
}
#pragma GCC diagnostic pop

}  // namespace

std::optional<PropertyList> readPropertyList(std::string_view document) {
  if (isTooDeep(document)) return std::nullopt;
  // A profile is many megabytes: kCFAllocatorNull leaves its bytes where they are, and ours.
  const Owned<CFDataRef> data(
      CFDataCreateWithBytesNoCopy(nullptr, reinterpret_cast<const UInt8*>(document.data()),
                                  static_cast<CFIndex>(document.size()), kCFAllocatorNull));
  if (!data) return std::nullopt;
  const Owned<CFPropertyListRef> list = parse(data.get());
  return list ? valueOf(list.get(), document.size()) : std::nullopt;
}

}  // namespace platform::apple
