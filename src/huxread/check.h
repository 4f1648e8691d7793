#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "huxread/container.h"
#include "huxread/document.h"

namespace huxread {

struct Problem {
  enum class Kind {
    Header,  // something odd about the header, or passed over in it; every section may be well
    Type,    // a section is of a type that is not known; it is kept, and checked as what it looks
             // like
    Stream,  // a section cannot be inflated
    Text,    // a section can be inflated, and is not the text that it should be
  };

  Kind kind;
  std::optional<std::uint32_t> section;
  std::string
      message;  // names the section, and the byte or line; holds no text taken from the file
};

// Inflates every section and reads its text: documents as trees, the profiler's report as XML whose
// elements must be nested rightly. Holds one text at a time; whoever goes on with the first
// snapshot can have its document kept, which is set when it could be read.
std::vector<Problem> check(const Container& container, std::optional<Document>* snapshot = nullptr);

}  // namespace huxread
