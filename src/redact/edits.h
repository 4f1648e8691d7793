#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "redact/secrets.h"

// Parts of a text and what is put in their place.

namespace redact {

using Range = std::pair<std::size_t, std::size_t>;  // the begin and end of a part of a text

// That of the ranges, which are in order, in which the part lies; null when it lies in none.
const Range* rangeAround(const std::vector<Range>& ranges, std::size_t begin, std::size_t end);
// Whether a part of it lies in one of the ranges, which are in order and apart.
bool overlaps(const std::vector<Range>& ranges, std::size_t begin, std::size_t end);

struct Edit {
  std::size_t begin;
  std::size_t end;
  std::size_t secret;
  std::string text;
  bool part;  // of the secret, not the whole of it
};

// Collects edits in any order. Of those that begin at the same place only the longest can be taken;
// the others are dropped from time to time, so that no more than about twice the places where edits
// begin are held.
class Edits {
 public:
  void add(Edit edit);

  // In order: the longest of what begins first, and nothing that overlaps it. There are none left.
  std::vector<Edit> take();

 private:
  void keepLongest();  // of those that begin at the same place; of equal ones the first

  std::vector<Edit> edits_;
  std::size_t thinAt_ = 1024;  // so many edits: keepLongest() again
};

// Adds where the names of a property list's elements stand: they are nobody's name, whoever is
// called so too.
void addElementNames(std::string_view text, std::vector<Range>& ranges);

// What makes a text that of a document stays: its first line, the mark that a line begins with,
// what the format calls a tag or an attribute ("Soft:", "mac-address="), and in a line that has no
// other one the first "=". A name that goes over them is replaced on both sides.
std::vector<Edit> withinLines(std::string_view text, std::vector<Edit> edits);

// What stands for the secret where it was found spelled as `original`.
std::string rendered(const Secret& secret, std::string_view original);

// What stands for it as it was first found.
std::string shownToken(const Secret& secret);

}  // namespace redact
