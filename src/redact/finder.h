#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "redact/edits.h"
#include "redact/matcher.h"
#include "redact/secrets.h"
#include "redact/walk.h"

namespace redact {

// What a document is, for its walk; None of a text that is neither.
enum class Form { None, Document, Profile };

// Adds what is a secret by its place or by its shape.
void collect(std::string_view text, Form form, Secrets& secrets);

// The same for whole command lines and variables, which may be a secret of another kind: a user's
// name.
void collectWhole(std::string_view text, Form form, Secrets& secrets);

// Finds secrets in texts in every spelling.
class Finder {
 public:
  // Empty when there are more secrets than can be looked for. `secrets` must stay.
  static std::optional<Finder> make(const Secrets& secrets);

  // In order, none within another.
  std::vector<Edit> find(std::string_view text, Form form) const;

 private:
  struct Pattern {
    std::string text;
    std::size_t secret;
    std::size_t skip = 0;   // bytes at its begin that stay
    bool common = false;    // counts at places of its own kind only
    bool anywhere = false;  // also within words
    bool part = false;      // of its secret
    bool person = false;    // names one
  };

  struct Found {
    Edits edits;
    // In the order of the text:
    std::vector<Range> whole;   // replaced, or left, as they are
    std::vector<Range> places;  // where common words count
    std::vector<Range> tokens;
    std::vector<Range> numbers;  // where nothing but a number can stand
  };

  explicit Finder(const Secrets& secrets) : secrets_(&secrets) {}
  std::optional<Edit> dataEdit(std::string_view text, const Field& field) const;
  std::optional<Edit> wholeEdit(std::string_view text, const Field& field, Kind kind) const;
  std::optional<std::size_t> idOf(const std::optional<std::string>& canonical) const;
  void addPatterns(std::size_t id);
  void addAddress(std::size_t id);
  void addBare(std::size_t id);
  void addParts(std::size_t id);
  void add(Pattern pattern);
  static std::optional<Matcher> matcherOf(const std::vector<Pattern>& patterns);
  void findPlaces(std::string_view text, Form form, Found& found) const;
  void give(std::string_view text, Range range, const Pattern& pattern, Found& found) const;
  std::optional<std::size_t> endOf(std::string_view text, std::size_t begin, std::size_t end,
                                   const Pattern& pattern) const;

  const Secrets* secrets_;
  std::vector<Pattern> patterns_;
  std::size_t bytes_ = 0;  // of them all
  std::optional<Matcher> matcher_;
  std::vector<Pattern> barePatterns_;
  std::optional<Matcher> bare_;  // of texts without separators
};

}  // namespace redact
