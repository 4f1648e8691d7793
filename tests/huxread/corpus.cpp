#include "support/corpus.h"

#include "huxread/container.h"

TEST(HuxFileCorpus, IsOpenedWhereItIsValid) {
  checkCorpus(PROJECT_FOLDER "/fuzz/corpus/huxFile", [](const std::string& file) {
    return static_cast<bool>(huxread::Container::parse(file));
  });
}
