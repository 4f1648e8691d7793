#include "support/corpus.h"

#include "huxread/document.h"

// Every seed is redacted by the fuzzer's function; "valid" are those whose tags can be read.
TEST(RedactCorpus, StaysWhatItWas) {
  checkCorpus(PROJECT_FOLDER "/fuzz/corpus/redact", [](const std::string& text) {
    return static_cast<bool>(huxread::Document::parse(text)) || text.starts_with("<?xml");
  });
}
