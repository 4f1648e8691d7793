#include "redact/spellings.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <set>

#include "base/digits.h"
#include "base/formatString.h"
#include "base/utf8.h"
#include "inspect/letterCase.h"
#include "redact/words.h"

namespace redact {

namespace {

using Texts = std::vector<std::string>;

bool isAlnum(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

std::string replaced(std::string text, std::string_view before, std::string_view after) {
  for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at)) {
    text.replace(at, before.size(), after);
    at += after.size();
  }
  return text;
}

constexpr std::string_view kApostrophes[] = {"'", "\xE2\x80\x99", "\xE2\x80\x98", "%27", "", "-"};
constexpr std::string_view kBlanks[] = {" ", "%20", "-", "_", "", "+", ".", "\xC2\xA0", "\\ "};

std::string composed(std::string text) {
  for (const auto& accent : accents())
    text = replaced(std::move(text), accent.decomposed, accent.composed);
  return text;
}

// The forms that differ in their accents.
Texts accentForms(const std::string& text) {
  std::string decomposed = text;
  std::string plain = text;
  std::string sound = text;
  for (const auto& letter : letters()) {
    sound = replaced(std::move(sound), letter.letter, letter.sound);
    if (!letter.plain.empty()) plain = replaced(std::move(plain), letter.letter, letter.plain);
  }
  for (const auto& accent : accents()) {
    decomposed = replaced(std::move(decomposed), accent.composed, accent.decomposed);
    plain = replaced(std::move(plain), accent.composed, accent.decomposed.substr(0, 1));
    sound = replaced(std::move(sound), accent.composed, accent.decomposed.substr(0, 1));
  }
  if (decomposed == text && plain == text) return {text};
  return {text, decomposed, plain, sound};
}

std::string percentEncoded(std::string_view text) {
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    encoded += byte >= 0x80 ? formatString("%%%02x", byte) : std::string(1, c);
  }
  return encoded;
}

// As the network names a machine: what is neither letter nor digit becomes "-" or goes.
std::string labelOf(std::string_view text, bool dashes) {
  std::string label;
  for (const char c : text) {
    if (isAlnum(c)) {
      label += c;
    } else if (dashes && !label.empty() && label.back() != '-') {
      label += '-';
    }
  }
  while (label.ends_with('-')) label.pop_back();
  return label;
}

// "mara's macbook pro" as "maras-macbook-pro": what the Mac makes of its name.
std::string localName(std::string text) {
  for (const std::string_view apostrophe : {"'", "\xE2\x80\x99"})
    text = replaced(std::move(text), apostrophe, "");
  return labelOf(text, true);
}

void addForms(const std::string& text, std::set<std::string>& forms) {
  forms.insert(text);
  const std::string straight = replaced(text, "\xE2\x80\x99", "'");
  for (const std::string_view apostrophe : kApostrophes) {
    if (apostrophe != "'" && straight.find('\'') == std::string::npos) break;
    const std::string quoted = replaced(straight, "'", apostrophe);
    for (const std::string_view blank : kBlanks) {
      if (blank != " " && straight.find(' ') == std::string::npos) break;
      const std::string form = replaced(quoted, " ", blank);
      for (const std::string_view ampersand : {"&", "%26"}) {
        const std::string spelled = replaced(form, "&", ampersand);
        forms.insert(spelled);
        forms.insert(percentEncoded(spelled));
        if (straight.find('&') == std::string::npos) break;
      }
    }
  }
}

// Of a serial number: without separators, and as the hexadecimal number of a display.
void addSerialForms(const std::string& text, std::set<std::string>& forms) {
  constexpr std::size_t kTelling = 8;  // characters that do not stand together by chance
  const std::string bare = labelOf(text, false);
  if (bare.size() >= kTelling) forms.insert(bare);
  const bool isNumber =
      text.find_first_not_of("0123456789") == std::string::npos && text.size() <= 10;
  if (isNumber && text.size() + 1 >= kTelling) {
    const unsigned long long number = std::strtoull(text.c_str(), nullptr, 10);
    if (number <= UINT32_MAX) forms.insert(formatString("%08llx", number));
  }
}

std::string firstLetter(std::string_view word) {
  std::size_t end = std::min<std::size_t>(1, word.size());
  while (end < word.size() && isUtf8Continuation(word[end])) ++end;
  return std::string(word.substr(0, end));
}

// Names with an apostrophe behind one or two letters, in small ones: "o'brien", "d'angelo".
Texts ownedNames(std::string_view text) {
  std::string folded = composed(inspect::foldCase(text));
  folded = replaced(std::move(folded), "\xE2\x80\x99", "'");
  Texts names;
  for (std::size_t at = 0; at < folded.size();) {
    const std::size_t end = std::min(folded.find_first_of(" -.,()_", at), folded.size());
    const std::size_t apostrophe = folded.find('\'', at);
    if (apostrophe > at && apostrophe <= at + 2 && apostrophe < end)
      names.push_back(folded.substr(at, end - at));
    at = end + 1;
  }
  return names;
}

}  // namespace

std::vector<std::string> wordsOf(std::string_view text) {
  std::string folded = composed(inspect::foldCase(text));
  for (const std::string_view apostrophe : {"\xE2\x80\x99", "\xE2\x80\x98"}) {
    folded = replaced(std::move(folded), apostrophe, "'");
  }
  Texts words;
  bool owned = false;  // what follows an apostrophe
  for (std::size_t at = 0; at < folded.size();) {
    std::size_t end = at;
    while (end < folded.size() && (isAlnum(folded[end]) || (folded[end] & 0x80) != 0)) ++end;
    if (end > at && !(owned && end - at < 3)) words.push_back(folded.substr(at, end - at));
    owned = end < folded.size() && folded[end] == '\'' && end > at;
    at = end + 1;
  }
  return words;
}

std::vector<std::string> spellingsOf(Kind kind, std::string_view text, const IsCommon& isCommon) {
  const std::string asItIs = inspect::foldCase(text);  // accents of both kinds, it may be
  const std::string folded = composed(asItIs);
  std::set<std::string> forms;
  addForms(asItIs, forms);
  for (const std::string& form : accentForms(folded)) addForms(form, forms);
  if (kind == Kind::Serial) addSerialForms(folded, forms);
  if (kind == Kind::Host) {
    constexpr std::size_t kNetBios = 15;  // characters of such a name
    for (const std::string& form : accentForms(folded)) {
      // Letters of other scripts go: of a name with "macbook" only that may be left.
      if (std::ranges::all_of(wordsOf(labelOf(form, true)), isCommon)) continue;
      for (const std::string& label :
           {localName(form), labelOf(form, true), labelOf(form, false)}) {
        if (label.size() < 3) continue;
        forms.insert(label);
        if (label.size() > kNetBios) forms.insert(label.substr(0, kNetBios));
      }
    }
  }
  return {forms.begin(), forms.end()};
}

std::vector<std::string> partsOf(Kind kind, std::string_view text) {
  constexpr std::size_t kShortest = 4;  // letters
  Texts names;
  if (kind != Kind::User && kind != Kind::Host) return names;
  const bool mail = text.find('@') != std::string_view::npos;
  text = text.substr(0, text.find('@'));
  const Texts words = wordsOf(text);
  if (words.size() < (mail ? 1U : 2U)) return names;
  const auto isTelling = [](const std::string& word) {
    return utf8Length(word) >= kShortest && std::ranges::none_of(word, isDigit);
  };
  names = ownedNames(text);
  names.insert(names.end(), words.begin(), words.end());
  if (kind == Kind::User && words.size() > 1)
    names.push_back(firstLetter(words.front()) + words.back());
  std::erase_if(names, [&isTelling](const std::string& name) { return !isTelling(name); });
  return names;
}

}  // namespace redact
