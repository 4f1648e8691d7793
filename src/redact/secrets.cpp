#include "redact/secrets.h"

#include <algorithm>
#include <cstdlib>

#include "base/formatString.h"
#include "base/text.h"
#include "base/utf8.h"
#include "inspect/letterCase.h"
#include "machine/cleanText.h"
#include "redact/shapes.h"
#include "redact/spellings.h"
#include "redact/words.h"

namespace redact {

namespace {

bool isFreeText(Kind kind) {
  return kind == Kind::Volume || kind == Kind::Network || kind == Kind::Printer ||
         kind == Kind::Device;
}

// Words of the profiler's own: "coreaudio_device", "thunderbolt_bus_0".
bool isToken(std::string_view text) {
  constexpr std::string_view kBegins[] = {"coreaudio_", "thunderbolt_", "thunderboltusb4_",
                                          "usb4_",      "sp",           "hda_"};
  return text.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_-") ==
             std::string_view::npos &&
         text.find('_') != std::string_view::npos &&
         std::ranges::any_of(kBegins,
                             [text](std::string_view begin) { return text.starts_with(begin); });
}

bool isTokenAlone(std::string_view text) {
  const auto tokens = tokensIn(text);
  return tokens.size() == 1 && tokens.front().begin == 0 && tokens.front().end == text.size();
}

// A name that every machine has.
bool saysNothing(Kind kind, std::string_view text) {
  if (kind == Kind::Device && isToken(text)) return true;
  if (kind == Kind::Serial) {
    const std::string folded = toLower(text);
    const bool none = folded == "empty" || folded == "none" || folded == "n/a";
    return none || text.find_first_not_of("0. xX") == std::string_view::npos ||
           !machine::isKnown(machine::statedValue(text));
  }
  if (kind == Kind::Host) return text == "WORKGROUP" || text == "local" || text == "localhost";
  if (!isFreeText(kind)) return false;
  const auto words = wordsOf(text);
  return std::ranges::all_of(words, isSystemsWord);
}

// Texts that may hold anybody's words, or the paths of programs.
bool isPersonal(std::string_view column) {
  constexpr std::string_view kColumns[] = {"name",        "info",   "description",
                                           "signed_by",   "parent", "shell",
                                           "scanner_app", "ppd",    "adapter"};
  return std::ranges::find(kColumns, column) != std::end(kColumns);
}

// Hexadecimal digits for addresses: hardware addresses of RFC 7042 (2.1.2, 2.2.3) and then such as
// are locally administered, UUIDs of version 4; network addresses of RFC 5737, RFC 2544 and RFC
// 3849. What tells that an address holds on one link only is kept: 169.254.0.x (reserved by RFC
// 3927), and fe80::x.
std::string tokenOf(const Secret& secret, std::size_t number) {
  const auto low = static_cast<unsigned>(number);
  const std::string& canonical = secret.canonical;
  switch (secret.kind) {
    case Kind::HardwareAddress:
      if (canonical.size() == 2 + 16) {
        return low < 0x100 ? formatString("00005eef100000%02x", low)
                           : formatString("02005eef%08x", low);
      }
      return low < 0x100 ? formatString("00005e0053%02x", low) : formatString("02005e%06x", low);
    case Kind::Uuid:
      return formatString("0000000000004000800000%010x", low);
    case Kind::NetworkAddress:
      if (canonical.starts_with("6:")) {
        return (canonical.starts_with("6:fe") ? "fe80::" : "2001:db8::") + formatString("%x", low);
      }
      if (canonical.starts_with("4:a9fe")) return formatString("169.254.0.%u", low % 256);
      if (low <= 3 * 254) {
        constexpr const char* kNets[] = {"192.0.2", "198.51.100", "203.0.113"};
        return formatString("%s.%u", kNets[(low - 1) / 254], (low - 1) % 254 + 1);
      }
      return formatString("198.%u.%u.%u", 18 + (low >> 16 & 1), low >> 8 & 0xFF, low & 0xFF);
    default:
      return formatString("%s-%u", kindNames()[static_cast<std::size_t>(secret.kind)].token.data(),
                          low);
  }
}

}  // namespace

std::string_view nameIn(Kind kind, std::string_view text) {
  constexpr std::string_view kVolumes = "/Volumes/";
  if (kind == Kind::Volume && text.starts_with(kVolumes)) text.remove_prefix(kVolumes.size());
  const std::size_t scheme = kind == Kind::Printer ? text.find("://") : std::string_view::npos;
  if (scheme != std::string_view::npos) text.remove_prefix(scheme + 3);
  if (kind == Kind::Host && text.ends_with(".local")) text.remove_suffix(6);
  return text;
}

std::optional<std::size_t> Secrets::add(Kind kind, std::string_view text,
                                        std::optional<std::size_t> like) {
  text = nameIn(kind, text);
  auto canonical = saysNothing(kind, text) ? std::nullopt : canonicalOf(kind, text);
  if (!canonical) {
    if (!text.empty() && !isAddress(kind) && !(kind == Kind::Device && isToken(text)))
      everybodys_.emplace(text);
    return std::nullopt;
  }
  const std::size_t apostrophe = canonical->find("\xE2\x80\x99");
  if (apostrophe != std::string::npos) canonical->replace(apostrophe, 3, "'");
  const std::size_t next = secrets_.size();
  addCanonical(kind, text, *canonical);
  const auto found = byCanonical_.find(*canonical);
  if (found == byCanonical_.end()) return std::nullopt;
  const std::size_t id = found->second;
  secrets_[id].byShape = false;
  if (like && id == next && *like != id) like_[id] = *like;
  return id;
}

void Secrets::addShape(Kind kind, std::string_view text, const std::string& canonical) {
  const std::size_t next = secrets_.size();
  if (saysNothing(kind, text)) return;
  addCanonical(kind, text, canonical);
  if (secrets_.size() > next) secrets_.back().byShape = true;
}

void Secrets::addCanonical(Kind kind, std::string_view text, const std::string& canonical) {
  if (isTokenAlone(text)) {
    tokens_.emplace(text);
    return;
  }
  const auto [place, isNew] = byCanonical_.emplace(canonical, secrets_.size());
  if (isNew) {
    secrets_.push_back({kind, std::string(text), canonical, "", false, 0, false});
  } else if (kind == Kind::Host && isFreeText(secrets_[place->second].kind)) {
    secrets_[place->second].kind = kind;  // what is called like the machine is called after it
  }
}

std::optional<std::size_t> Secrets::find(const std::string& canonical) const {
  auto found = byCanonical_.find(canonical);
  if (found == byCanonical_.end()) {
    const std::size_t apostrophe = canonical.find("\xE2\x80\x99");
    if (apostrophe == std::string::npos) return std::nullopt;
    found = byCanonical_.find(std::string(canonical).replace(apostrophe, 3, "'"));
    if (found == byCanonical_.end()) return std::nullopt;
  }
  return found->second;
}

std::optional<std::size_t> Secrets::addItems(Kind kind, std::string_view text, bool list,
                                             std::optional<std::size_t> like) {
  if (!list && kind != Kind::NetworkAddress) return add(kind, text, like);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(", "), text.size());
    add(kind, text.substr(0, end));
    text.remove_prefix(std::min(end + 2, text.size()));
  }
  return std::nullopt;
}

void Secrets::addTables(const machine::Description& machine) {
  // Users first: what names a person and a machine names the person.
  for (const bool users : {true, false}) {
    for (std::size_t t = 0; t < machine::kTableCount; ++t) {
      const machine::Table& table = machine::kTables[t];
      for (const machine::Row& row : machine[t].rows) {
        std::optional<std::size_t> person;
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
          const machine::Column& column = table.columns[c];
          const auto kind = kindOf(table.name, column.secret);
          const std::string_view text = machine::textOf(row[c]);
          if (!kind || text.empty() || column.secret == machine::Secret::Home) continue;
          if (column.secret == machine::Secret::Whole || (*kind == Kind::User) != users) continue;
          const auto id = addItems(*kind, text, column.name == "dns_domain", person);
          if (*kind == Kind::User && !person) person = id;
        }
      }
    }
  }
}

void Secrets::addVocabulary(const machine::Description& machine) {
  for (std::size_t t = 0; t < machine::kTableCount; ++t) {
    const machine::Table& table = machine::kTables[t];
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
      const machine::Column& column = table.columns[c];
      addVocabulary(column.name);
      const bool path = column.name == "path";
      if (column.secret != machine::Secret::None && !path) continue;
      for (const machine::Row& row : machine[t].rows) {
        const std::string_view text = machine::textOf(row[c]);
        if (!path) texts_.insert(inspect::foldCase(text));
        const bool system = text.starts_with("/System/Library/") || text.starts_with("/usr/");
        if (path ? system : !isPersonal(column.name)) addVocabulary(text);
      }
    }
  }
}

void Secrets::addVocabulary(std::string_view text) {
  for (std::string& word : wordsOf(text)) vocabulary_.insert(std::move(word));
}

bool Secrets::isCommonWord(const std::string& word) const {
  return isOrdinaryWord(word) || vocabulary_.contains(word);
}

bool Secrets::isCommon(const Secret& secret) const {
  constexpr std::size_t kShortest = 3;         // bytes of a name, of two characters at least
  constexpr std::size_t kShortestSerial = 5;   // and of a serial number
  constexpr std::size_t kShortestNumber = 7;   // and of one of digits alone
  constexpr std::size_t kShortestAddress = 8;  // digits, of one that is damaged
  if (secret.kind == Kind::HardwareAddress)
    return secret.canonical.size() - std::string_view("x:").size() < kShortestAddress;
  if (isAddress(secret.kind)) return false;
  if (secret.kind == Kind::Arguments) return true;
  const std::string& text = secret.text;
  const bool ofSomebody = secret.kind == Kind::User || secret.kind == Kind::Host;
  if (text.size() > kLongest && !ofSomebody) return true;
  const bool number = text.find_first_not_of("0123456789.") == std::string::npos;
  const auto words = wordsOf(text);
  if (secret.kind == Kind::Serial) {
    if (text.size() < kShortestSerial || (number && text.size() < kShortestNumber)) return true;
    // What is made of the words of keys could be one: "mount-point".
    return std::ranges::all_of(
        words, [this](const std::string& word) { return vocabulary_.contains(word); });
  }
  if (secret.kind == Kind::Host && text.find('.') != std::string::npos) return number;  // a domain
  if (secret.kind == Kind::Environment) {
    // One that is a word of its own, as keys and passwords are.
    constexpr std::size_t kShortestKey = 12;
    return text.size() < kShortestKey || number ||
           text.find_first_of("/:,; ") != std::string::npos ||
           text.find_first_of("0123456789") == std::string::npos;
  }
  if (text.size() < kShortest || utf8Length(text) < 2 || number || words.empty()) return true;
  if (isFreeText(secret.kind) && texts_.contains(inspect::foldCase(text))) return true;
  return std::ranges::all_of(words, [this](const std::string& word) { return isCommonWord(word); });
}

void Secrets::addTokens(std::string_view text) {
  for (const Token& token : tokensIn(text)) {
    if (token.within) continue;  // it may be somebody's "LABHOST-4711", which no number is to tell
    std::size_t& highest = numbers_[static_cast<std::size_t>(token.kind)];
    highest = std::max(highest, token.number);
  }
}

void Secrets::giveTokens() {
  constexpr std::size_t kMost = 1 << 18;  // addresses of documents come to an end
  for (std::size_t id = 0; id < secrets_.size(); ++id) {
    Secret& secret = secrets_[id];
    secret.common = isCommon(secret);
    const auto like = like_.find(id);
    if (like != like_.end()) {
      secret.token = secrets_[like->second].token;
      continue;
    }
    std::size_t& number = numbers_[static_cast<std::size_t>(secret.kind)];
    do {
      secret.token = tokenOf(secret, ++number);
      // One that is a secret itself, in a file that was redacted before or that documents use.
    } while (number < kMost &&
             byCanonical_.contains(canonicalOf(secret.kind, secret.token).value_or("")));
  }
  chooseNumbers();
}

// Behind every number that is a secret as it is, in hexadecimal, or as a display's, whose digits
// are hexadecimal ones also where its kind of value is a decimal number.
void Secrets::chooseNumbers() {
  constexpr std::size_t kMostDigits = 8;
  std::set<unsigned long> taken;
  for (const Secret& secret : secrets_) {
    if (secret.kind != Kind::Serial || secret.text.size() > kMostDigits) continue;
    for (const int base : {10, 16}) taken.insert(std::strtoul(secret.text.c_str(), nullptr, base));
    const std::string digits = formatString("%lx", std::strtoul(secret.text.c_str(), nullptr, 10));
    taken.insert(std::strtoul(digits.c_str(), nullptr, 10));
  }
  for (const unsigned long number : taken) {
    if (number >= firstNumber_ + secrets_.size()) break;
    if (number >= firstNumber_) firstNumber_ = static_cast<unsigned>(number) + 1;
  }
}

}  // namespace redact
