#include "huxread/document.h"
#include "support/corpus.h"

TEST(DocumentCorpus, IsReadWhereItIsValid) {
  checkCorpus(PROJECT_FOLDER "/fuzz/corpus/document", [](const std::string& text) {
    return static_cast<bool>(huxread::Document::parse(text));
  });
}
