#include "fuzz/fuzzers.h"
#include "support/fileText.h"

// Runs every seed of fuzz/corpus: none may end the program, and those called "valid" are read.

namespace {

struct Fuzzer {
  const char* name;
  bool (*run)(const std::string& input);
};

class Corpus : public testing::TestWithParam<Fuzzer> {};

}  // namespace

TEST_P(Corpus, IsReadWhereItIsValid) {
  const std::filesystem::path folder = PROJECT_FOLDER "/fuzz/corpus";
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder / GetParam().name)) {
    const std::string name = entry.path().filename();
    SCOPED_TRACE(name);
    EXPECT_EQ(GetParam().run(fileText(entry.path())), name.starts_with("valid"));
    ++files;
  }
  EXPECT_GT(files, 5);
}

INSTANTIATE_TEST_SUITE_P(
    Fuzz, Corpus,
    testing::Values(Fuzzer{"commandOutput", fuzz::commandOutput},
                    Fuzzer{"document", fuzz::document}, Fuzzer{"edid", fuzz::edid},
                    Fuzzer{"huxFile", fuzz::huxFile}, Fuzzer{"pipeline", fuzz::pipeline},
                    Fuzzer{"propertyList", fuzz::propertyList}, Fuzzer{"redact", fuzz::redact}),
    [](const auto& tested) { return std::string(tested.param.name); });
