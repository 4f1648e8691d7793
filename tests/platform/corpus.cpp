#include "support/corpus.h"

#include "platform/portable/propertyListReader.h"

TEST(PropertyListCorpus, IsReadWhereItIsValid) {
  checkCorpus(PROJECT_FOLDER "/fuzz/corpus/propertyList", [](const std::string& document) {
    return platform::readPropertyList(document).has_value();
  });
}
