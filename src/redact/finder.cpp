#include "redact/finder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "base/digits.h"
#include "base/formatString.h"
#include "base/utf8.h"
#include "inspect/letterCase.h"
#include "redact/derived.h"
#include "redact/displayBlock.h"
#include "redact/edits.h"
#include "redact/shapes.h"
#include "redact/spellings.h"

namespace redact {

namespace {

using Take = std::function<void(const Field& field)>;

void walk(std::string_view text, Form form, const Take& take) {
  if (form == Form::Document) walkDocument(text, take);
  if (form == Form::Profile) walkProfile(text, take);
}

// As it is looked for: documents have entities too where programs put them.
std::string valueOf(std::string_view text, const Field& field) {
  return withoutEntities(text.substr(field.begin, field.end - field.begin)).text();
}

std::optional<Kind> kindAt(const Field& field) {
  if (field.place == nullptr) return std::nullopt;
  return kindOf(field.place->table, field.place->secret);
}

// The number of a display, which tables have in decimal; "" when it states none. A text that is no
// number stays as it is.
std::string displayNumber(std::string_view text) {
  const auto number = hexadecimalNumber(text);
  if (!number) return std::string(text);
  return statesDisplay(*number) ? formatString("%u", *number) : "";
}

// "Mara Lindgrove (mara)", "jonas jonas@example.com", "mara".
void addNames(std::string_view text, std::string_view key, Secrets& secrets) {
  if (text.starts_with('/')) return;  // a home folder, told by its shape
  const std::size_t bracket = text.rfind(" (");
  if (text.ends_with(')') && bracket != std::string_view::npos) {
    const auto person =
        secrets.add(Kind::User, text.substr(bracket + 2, text.size() - bracket - 3));
    secrets.add(Kind::User, text.substr(0, bracket), person);
    return;
  }
  const bool several = key == "usr-acc" || text.find('@') != std::string_view::npos;
  secrets.add(Kind::User, several ? text.substr(0, text.find_first_of(" \r\t")) : text);
}

// The first three bytes of a hardware address, "00-00-5E": everybody has them of that maker.
bool isMaker(std::string_view value) {
  constexpr std::size_t kSize = 8;  // bytes
  const auto canonical = canonicalOf(Kind::HardwareAddress, value);
  return value.size() == kSize && canonical &&
         canonical->size() == std::string_view("x:00005e").size();
}

void addField(const std::string& value, const Field& field, Kind kind, Secrets& secrets) {
  if (machine::isDisplayNumber(field.key)) {
    secrets.add(Kind::Serial, displayNumber(value));
  } else if (kind == Kind::HardwareAddress && isMaker(value)) {
    return;
  } else if (kind == Kind::User) {
    addNames(value, field.key, secrets);
  } else {
    secrets.add(kind, value);
  }
}

bool isNumber(std::string_view word) {
  return std::ranges::all_of(word, isDigit);
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (static_cast<unsigned char>(c) & 0x80) != 0;
}

// Whether a sign begins there that ends a word: a no-break blank, a quotation mark, a dash (U+0080
// to U+00BF, U+2000 to U+203F, U+3000 to U+303F). Of the last two a few are letters, or join them.
// A letter of a script without blanks, or with endings that stand behind names of any script, is
// like a sign: kana, Han, Hangul (U+3040 to U+9FFF, U+AC00 to U+D7FF).
bool isSign(std::string_view text, std::size_t at) {
  constexpr std::string_view kLetters[] = {"\xE2\x80\x8C", "\xE2\x80\x8D", "\xE3\x80\x85",
                                           "\xE3\x80\x86", "\xE3\x80\x87"};
  const std::string_view begin = text.substr(at, 3);
  const bool found = begin.starts_with('\xC2') || begin.starts_with("\xE2\x80") ||
                     (begin >= "\xE3\x80" && begin < "\xEA") ||
                     (begin >= "\xEA\xB0" && begin < "\xEE");
  if (!found) return false;
  return std::ranges::none_of(
      kLetters, [begin](std::string_view letter) { return begin.starts_with(letter); });
}

bool isBesideSign(std::string_view text, std::size_t at) {
  constexpr std::size_t kLongest = 4;  // bytes of a character
  std::size_t before = at - 1;
  while (before > 0 && at - before < kLongest && isUtf8Continuation(text[before])) --before;
  return isSign(text, at) || isSign(text, before);
}

// Whether a word goes on from one byte to the next: at `at` in the text, which is in small letters.
// The bytes of an URL's "%20" end words, too.
bool goesOn(std::string_view text, std::size_t at) {
  if (at == 0 || at >= text.size()) return false;
  const char before = text[at - 1];
  const char after = text[at];
  if (isDigit(before) && isDigit(after)) return !(at >= 3 && text[at - 3] == '%');
  if (!isLetter(before) || !isLetter(after)) return false;
  return !isBesideSign(text, at) && !(at >= 3 && text[at - 3] == '%');
}

// Whether a token would run into the number behind it: "USER-1" and the "2" of "mara2".
bool runsOn(std::string_view text, std::size_t end, std::string_view token) {
  const bool numbered = !tokensIn(token).empty();
  return numbered && end < text.size() && isDigit(text[end]);
}

// Whether four numbers of a network address are a part of more.
bool goesOnAsVersion(std::string_view text, std::size_t begin, std::size_t end, Kind kind) {
  if (kind != Kind::NetworkAddress) return false;
  const bool after = end + 1 < text.size() && text[end] == '.' && isDigit(text[end + 1]);
  return after || (begin > 0 && text[begin - 1] == '.');
}

// Whether what stands between letters and digits is the same everywhere: one number, not two.
bool hasOneSeparator(std::string_view text) {
  const auto isSeparator = [](char c) { return !isDigit(c) && !isLetter(c); };
  const auto first = std::ranges::find_if(text, isSeparator);
  return std::all_of(first, text.end(), [&](char c) { return !isSeparator(c) || c == *first; });
}

// The end of a network address that is made of a hardware address (RFC 4291, appendix A).
std::string interfaceOf(const std::string& digits) {
  const auto number = [&digits](std::size_t at) {
    return static_cast<unsigned>(std::strtoul(digits.substr(at, 2).c_str(), nullptr, 16));
  };
  constexpr unsigned kUniversal = 2;
  return formatString("%x:%x:%x:%x", (number(0) ^ kUniversal) << 8 | number(2),
                      number(4) << 8 | 0xFF, 0xFE00 | number(6), number(8) << 8 | number(10));
}

// What base64 stands for; what is none is passed over.
std::string decoded(std::string_view text) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned held = 0;
  unsigned bits = 0;
  for (const char c : text) {
    const std::size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos) continue;
    held = (held << 6 | static_cast<unsigned>(digit)) & 0xFFFF;
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(held >> bits & 0xFF);
  }
  return bytes;
}

// Whether letters and digits stand on both sides, of which an "%2d" has none.
bool isWithinWord(std::string_view text, std::size_t at) {
  const auto isWord = [](char c) { return isDigit(c) || isLetter(c); };
  if (at == 0 || at >= text.size() || !isWord(text[at]) || !isWord(text[at - 1])) return false;
  return !isBesideSign(text, at) && !(at >= 3 && text[at - 3] == '%');
}

// Where a name stands in its field: the whole of it but what every one begins with.
Range nameRange(std::string_view text, const Field& field, Kind kind) {
  const std::string_view value = text.substr(field.begin, field.end - field.begin);
  const std::string_view name = nameIn(kind, value);
  const auto from = static_cast<std::size_t>(name.data() - value.data());
  return {field.begin + from, field.begin + from + name.size()};
}

}  // namespace

void collect(std::string_view text, Form form, Secrets& secrets) {
  std::unordered_set<std::string_view> keys;
  std::vector<Range> plain;  // where four numbers are no version
  walk(text, form, [&](const Field& field) {
    if (field.key.find_first_of("_-") != std::string_view::npos && keys.insert(field.key).second) {
      secrets.addVocabulary(field.key);
    }
    // What a part of the report goes by stays, whoever goes by it: "SPUSBDataType".
    const std::string_view value = text.substr(field.begin, field.end - field.begin);
    if (field.key == "_dataType" && value.starts_with("SP") && value.ends_with("DataType"))
      secrets.addVocabulary(value);
    if (!machine::statesVersions(field.key) && !machine::statesVersions(field.parent)) {
      plain.emplace_back(field.begin, field.end);
    }
    if (machine::isDisplayBlock(field.key)) {
      displayBlockWithout(valueOf(text, field),
                          [&](const std::string& serial) -> std::optional<unsigned> {
                            secrets.add(Kind::Serial, serial);
                            return std::nullopt;
                          });
      return;
    }
    const auto kind = kindAt(field);
    if (kind && !isWhole(*kind) && !field.data)
      addField(valueOf(text, field), field, *kind, secrets);
  });
  secrets.addTokens(text);
  const Derived characters = withoutEntities(text);
  const std::string_view shaped = characters.text();
  findShapes(shaped, [&](const Shape& shape) {
    const auto [begin, end] = characters.origin(shape.begin, shape.end);
    const bool mayBeVersion = shape.canonical.starts_with("4:");
    if (mayBeVersion && rangeAround(plain, begin, end) == nullptr) return;
    secrets.addShape(shape.kind, shaped.substr(shape.begin, shape.end - shape.begin),
                     shape.canonical);
  });
}

void collectWhole(std::string_view text, Form form, Secrets& secrets) {
  walk(text, form, [&](const Field& field) {
    const auto kind = kindAt(field);
    if (kind && isWhole(*kind)) secrets.add(*kind, valueOf(text, field));
  });
}

std::optional<Finder> Finder::make(const Secrets& secrets) {
  Finder finder(secrets);
  for (std::size_t id = 0; id < secrets.size(); ++id) finder.addPatterns(id);
  for (std::size_t id = 0; id < secrets.size(); ++id) finder.addParts(id);
  for (std::size_t id = 0; id < secrets.size(); ++id) finder.addBare(id);
  finder.matcher_ = matcherOf(finder.patterns_);
  finder.bare_ = matcherOf(finder.barePatterns_);
  if (!finder.matcher_ || !finder.bare_) return std::nullopt;
  return finder;
}

std::optional<Matcher> Finder::matcherOf(const std::vector<Pattern>& patterns) {
  std::vector<Matcher::Text> texts;
  for (std::size_t i = 0; i < patterns.size(); ++i) texts.push_back({patterns[i].text, i});
  return Matcher::make(texts);
}

void Finder::add(Pattern pattern) {
  if (pattern.text.empty() || bytes_ > Matcher::kMostNodes) return;  // too many in all
  bytes_ += pattern.text.size();
  patterns_.push_back(std::move(pattern));
}

void Finder::addAddress(std::size_t id) {
  const Secret& secret = (*secrets_)[id];
  if (secret.kind == Kind::NetworkAddress) {
    if (!secret.canonical.starts_with("4:")) return;
    for (const char separator : {'.', '-', '_'}) {
      std::string text = secret.text;
      std::ranges::replace(text, '.', separator);
      add({.text = std::move(text), .secret = id});
    }
    return;
  }
  if (secret.common) return;
  const std::string digits = secret.canonical.substr(2);
  constexpr std::ptrdiff_t kTelling = 5;  // digits that are not 0 do not stand together by chance
  if (std::ranges::count_if(digits, [](char c) { return c != '0'; }) < kTelling) return;
  add({.text = digits, .secret = id, .anywhere = true});
  add({.text = inspect::foldCase(secret.text), .secret = id});  // a damaged one has no shape
  if (digits.size() == 12) add({.text = interfaceOf(digits), .secret = id});
}

// Numbers that may be written with separators anywhere.
void Finder::addBare(std::size_t id) {
  const Secret& secret = (*secrets_)[id];
  constexpr std::size_t kShortest = 8;  // characters
  const bool digits = secret.kind == Kind::HardwareAddress || secret.kind == Kind::Uuid;
  if (!digits && (secret.kind != Kind::Serial || secret.common)) return;
  const std::string text = digits ? secret.canonical.substr(2)
                                  : withoutSeparators(inspect::foldCase(secret.text)).text();
  if (text.size() >= kShortest) barePatterns_.push_back({.text = text, .secret = id});
}

void Finder::addPatterns(std::size_t id) {
  const Secret& secret = (*secrets_)[id];
  if (isAddress(secret.kind)) {
    addAddress(id);
    return;
  }
  if (secret.kind == Kind::Arguments || (secret.common && secret.kind == Kind::Environment)) return;
  const bool placed = secret.kind == Kind::User || secret.kind == Kind::Host;
  if (secret.text.size() > Secrets::kLongest) {
    if (placed)
      add({.text = inspect::foldCase(secret.text), .secret = id, .common = secret.common});
    return;
  }
  const auto isCommon = [&](const std::string& word) {
    return !secret.common && (isNumber(word) || secrets_->isCommonWord(word));
  };
  for (const std::string& form : spellingsOf(secret.kind, secret.text, isCommon)) {
    constexpr std::size_t kTelling = 8;
    if (form.empty()) continue;
    const bool telling = secret.kind == Kind::Serial && form.size() >= kTelling;
    if (secret.kind == Kind::Volume) add({.text = "/volumes/" + form, .secret = id, .skip = 9});
    if (secret.common && !placed) continue;
    add({.text = form,
         .secret = id,
         .common = secret.common,
         .anywhere = telling && !secret.common,
         .person = secret.kind == Kind::User});
  }
}

void Finder::addParts(std::size_t id) {
  const Secret& secret = (*secrets_)[id];
  const bool mail = secret.byShape && secret.text.find('@') != std::string::npos;  // of strangers
  if (secret.text.size() > Secrets::kLongest || mail) return;
  for (const std::string& part : partsOf(secret.kind, secret.text)) {
    if (secrets_->isCommonWord(part)) continue;
    for (const std::string& form : spellingsOf(Kind::User, part, nullptr))
      add({.text = form, .secret = id, .part = true, .person = true});
  }
}

// Where what is to be replaced ends; nothing when it is a part of a longer word. Languages without
// an apostrophe, and names on a network, have an "s" behind a person's name, and Macs are called
// "marasmacbook".
std::optional<std::size_t> Finder::endOf(std::string_view text, std::size_t begin, std::size_t end,
                                         const Pattern& pattern) const {
  if (pattern.anywhere) return end;
  if (goesOn(text, begin)) return std::nullopt;
  if (!goesOn(text, end)) return end;
  constexpr std::size_t kShortest = 3;  // letters
  if (!pattern.person || utf8Length(pattern.text) < kShortest) return std::nullopt;
  const std::string_view rest = text.substr(end);
  const auto follows = [rest](std::string_view word) { return rest.starts_with(word); };
  if (std::ranges::any_of(std::array{"smac", "simac"}, follows)) return end + 1;
  if (std::ranges::any_of(std::array{"macbook", "imac"}, follows)) return end;
  if (!follows("s") || goesOn(text, end + 1)) return std::nullopt;
  const bool common = secrets_->isCommonWord(std::string(text.substr(begin, end + 1 - begin)));
  return common ? std::nullopt : std::optional(end + 1);
}

// What is to stand in the place of a display's block or of bytes; nothing when it holds no secret.
std::optional<Edit> Finder::dataEdit(std::string_view text, const Field& field) const {
  const std::string_view value = text.substr(field.begin, field.end - field.begin);
  if (field.data) {
    const auto within = find(decoded(value), Form::None);
    if (within.empty()) return std::nullopt;
    return Edit{field.begin, field.end, within.front().secret, "", false};
  }
  auto block =
      displayBlockWithout(value, [this](const std::string& serial) -> std::optional<unsigned> {
        const auto id = idOf(canonicalOf(Kind::Serial, serial));
        return id ? std::optional(secrets_->numberOf(*id)) : std::nullopt;
      });
  if (!block) return std::nullopt;
  return Edit{field.begin, field.end, block->second - secrets_->numberOf(0),
              std::move(block->first), false};
}

// The same of a text that is a secret from its begin to its end.
std::optional<Edit> Finder::wholeEdit(std::string_view text, const Field& field, Kind kind) const {
  std::string plain = valueOf(text, field);
  const bool display = machine::isDisplayNumber(field.key) && hexadecimalNumber(plain);
  plain = display ? displayNumber(plain) : std::string(nameIn(kind, plain));
  const auto id = plain.empty() ? std::nullopt : idOf(canonicalOf(kind, plain));
  if (!id) return std::nullopt;
  const Range name = nameRange(text, field, kind);
  std::string token = rendered((*secrets_)[*id], plain);
  if (display) token = formatString("%x", secrets_->numberOf(*id));
  if (field.number) token = std::to_string(secrets_->numberOf(*id));
  return Edit{name.first, name.second, *id, std::move(token), false};
}

// The secret of that form; nothing when there is none, or when it is one that is kept.
std::optional<std::size_t> Finder::idOf(const std::optional<std::string>& canonical) const {
  const auto id = canonical ? secrets_->find(*canonical) : std::nullopt;
  return id && !secrets_->keeps((*secrets_)[*id].kind) ? id : std::nullopt;
}

// What is replaced at its place, and where that is told from.
void Finder::findPlaces(std::string_view text, Form form, Found& found) const {
  walk(text, form, [&](const Field& field) {
    std::optional<Edit> edit;
    const auto kind = kindAt(field);
    if (field.number) found.numbers.emplace_back(field.begin, field.end);
    if (field.date) found.whole.emplace_back(field.begin, field.end);
    const std::string_view value = text.substr(field.begin, field.end - field.begin);
    if (field.data || (machine::isDisplayBlock(field.key) && isDisplayBlock(value))) {
      edit = dataEdit(text, field);
      if (!edit) found.whole.emplace_back(field.begin, field.end);
    } else if (kind == Kind::User || kind == Kind::Host) {
      found.places.emplace_back(field.begin, field.end);
    } else if (kind && !secrets_->keeps(*kind)) {
      edit = wholeEdit(text, field, *kind);
    }
    if (!edit) return;
    found.whole.emplace_back(edit->begin, edit->end);
    found.edits.add(std::move(*edit));
  });
  if (form == Form::Profile) {
    addElementNames(text, found.whole);
    std::ranges::sort(found.whole);
  }
  for (const Token& token : tokensIn(text)) found.tokens.emplace_back(token.begin, token.end);
}

void Finder::give(std::string_view text, Range range, const Pattern& pattern, Found& found) const {
  const auto [begin, end] = range;
  const Secret& secret = (*secrets_)[pattern.secret];
  if (overlaps(found.whole, begin, end) || rangeAround(found.tokens, begin, end) != nullptr ||
      secrets_->keeps(secret.kind))
    return;
  if (pattern.common && rangeAround(found.places, begin, end) == nullptr) return;
  if (const Range* const number = rangeAround(found.numbers, begin, end)) {
    // All of it: what stays beside a token would be digits that can make the secret again.
    found.edits.add({number->first, number->second, pattern.secret,
                     std::to_string(secrets_->numberOf(pattern.secret)), pattern.part});
    return;
  }
  std::string token = rendered(secret, text.substr(begin, end - begin));
  if (runsOn(text, end, token)) token += '_';
  found.edits.add({begin, end, pattern.secret, std::move(token), pattern.part});
}

std::vector<Edit> Finder::find(std::string_view text, Form form) const {
  Found found;
  findPlaces(text, form, found);
  const Derived plain = withoutEntities(text);
  const std::string folded = inspect::foldCase(plain.text());
  matcher_->find(folded, [&](std::size_t begin, std::size_t end, std::size_t at) {
    const Pattern& pattern = patterns_[at];
    const auto last = endOf(folded, begin, end, pattern);
    if (!last || goesOnAsVersion(folded, begin, end, (*secrets_)[pattern.secret].kind)) return;
    give(text, plain.origin(begin + pattern.skip, *last), pattern, found);
  });
  const Derived bare = withoutSeparators(folded);
  bare_->find(bare.text(), [&](std::size_t begin, std::size_t end, std::size_t at) {
    const auto [from, to] = bare.origin(begin, end);
    const std::size_t size = to - from;
    const bool apart =
        size > end - begin && hasOneSeparator(std::string_view(folded).substr(from, size));
    if (!apart || isWithinWord(folded, from) || isWithinWord(folded, to)) return;
    // The number of a token and what stands behind it are no number.
    const Range range = plain.origin(from, to);
    if (!overlaps(found.tokens, range.first, range.second))
      give(text, range, barePatterns_[at], found);
  });
  findShapes(plain.text(), [&](const Shape& shape) {
    if (const auto id = idOf(shape.canonical))
      give(text, plain.origin(shape.begin, shape.end), {.text = {}, .secret = *id}, found);
  });
  std::vector<Edit> edits = found.edits.take();
  return form == Form::Document ? withinLines(text, std::move(edits)) : edits;
}

}  // namespace redact
