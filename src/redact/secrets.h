#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "machine/description.h"
#include "redact/kinds.h"

namespace redact {

struct Secret {
  Kind kind;
  std::string text;        // as it was first found
  std::string canonical;   // see shapes.h
  std::string token;       // what stands for it; of hexadecimal addresses the digits
  bool common = false;     // too common a word to be looked for anywhere but at its own places
  std::size_t places = 0;  // how often it was found
  bool byShape = false;    // only: its place did not say what it is
};

// A text without what every one of its kind begins or ends with: "/Volumes/", "ipp://", ".local".
std::string_view nameIn(Kind kind, std::string_view text);

// The secrets of a file, each once, whichever way it is spelled. One that is found as several kinds
// is of the first.
class Secrets {
 public:
  // Bytes: what is longer is replaced in its own places only, but for names of people and machines.
  static constexpr std::size_t kLongest = 256;

  // `kept` kinds are found and left.
  explicit Secrets(std::set<Kind> kept) : kept_(std::move(kept)) {}
  bool keeps(Kind kind) const { return kept_.contains(kind); }

  // What cannot be a secret, by words alone (see words.h), is not taken, nor is a token of an
  // earlier redaction. `like` is a secret
  // whose token stands for this one too: another name of the same person.
  std::optional<std::size_t> add(Kind kind, std::string_view text,
                                 std::optional<std::size_t> like = std::nullopt);
  void addShape(Kind kind, std::string_view text, const std::string& canonical);

  // Every column that holds a secret; those of commands and variables, which are looked for at
  // their places only, left out.
  void addTables(const machine::Description& machine);

  // Words that are no secret where they stand: of the machine's parts and the system's own files.
  void addVocabulary(const machine::Description& machine);
  void addVocabulary(std::string_view text);

  // Tokens that are there already, for none to be given again.
  void addTokens(std::string_view text);

  // Decides which are common and gives each its token, of which none is a secret of this file.
  void giveTokens();

  std::optional<std::size_t> find(const std::string& canonical) const;
  Secret& operator[](std::size_t id) { return secrets_[id]; }
  const Secret& operator[](std::size_t id) const { return secrets_[id]; }
  std::size_t size() const { return secrets_.size(); }
  // What stood where secrets stand, and is what every Mac has: "root", "Ethernet".
  const std::set<std::string>& everybodys() const { return everybodys_; }
  // What stood where secrets stand, and looks like a token: "HOST-1".
  const std::set<std::string>& tokens() const { return tokens_; }
  // The number that stands for a secret where only a number can: no secret itself.
  unsigned numberOf(std::size_t id) const { return firstNumber_ + static_cast<unsigned>(id); }
  bool isCommonWord(const std::string& word) const;

 private:
  // Those of a list have ", " between them.
  std::optional<std::size_t> addItems(Kind kind, std::string_view text, bool list,
                                      std::optional<std::size_t> like);
  void addCanonical(Kind kind, std::string_view text, const std::string& canonical);
  bool isCommon(const Secret& secret) const;
  void chooseNumbers();

  std::set<Kind> kept_;
  std::vector<Secret> secrets_;
  std::unordered_map<std::string, std::size_t> byCanonical_;
  std::unordered_map<std::size_t, std::size_t> like_;
  std::unordered_set<std::string> vocabulary_;
  std::unordered_set<std::string> texts_;  // of columns that hold no secret
  std::set<std::string> everybodys_;
  std::set<std::string> tokens_;
  std::array<std::size_t, 16> numbers_{};  // the highest of the tokens, by kind
  unsigned firstNumber_ = 1001;
};

}  // namespace redact
