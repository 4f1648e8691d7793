#include <utility>

#include "collect/plistToTags.h"
#include "fuzz/fuzzers.h"
#include "support/fakeHost.h"

// Any bytes as a property list, converted as a profile and as a dictionary; the text form of that
// is written into the room that is allotted to it.
bool fuzz::propertyList(const std::string& input) {
  FakeHost host;
  kevaDoc document(true, "Macintosh");
  auto list = host.parsePropertyList(input);
  if (!list) return false;
  if (const auto* dictionary = list->dictionary())
    convertDictionary(host, *dictionary, "", document);
  convertProfile(host, std::move(*list), document);
  std::string text(document.textSize() + 1, '\0');
  const unsigned length = document.writeText(text.data(), 0, false, false);
  expect(length < text.size() && text[length] == '\0', "the text form fits into its room");
  return true;
}
