#include <cstddef>

#include "fuzz/fuzzers.h"
#include "huxread/check.h"
#include "huxread/container.h"
#include "huxread/salvage.h"

// Any bytes as a snapshot file, of which every section is inflated and checked, or from which is
// salvaged what can be read.
bool fuzz::huxFile(const std::string& input) {
  const auto container = huxread::Container::parse(input);
  const huxread::Salvaged salvaged = huxread::salvage(input);
  for (const huxread::SalvagedSection& section : salvaged.sections) {
    expect(section.offset <= input.size() && section.used <= input.size() - section.offset,
           "what is salvaged lies within the file");
    (void)huxread::extentOf(section);
  }
  if (!container) return false;
  (void)huxread::check(*container);
  const bool whole = salvaged.damage == huxread::Salvaged::Damage::None;
  for (const huxread::Section& section : container->sections()) {
    expect(static_cast<bool>(container->text(section.number)) || !whole,
           "sections of a file without damage can be read");
  }
  return true;
}
