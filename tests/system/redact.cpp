#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "huxread/handmade.h"
#include "support/fileText.h"
#include "support/shell.h"
#include "support/snapshotFile.h"
#include "support/workingFolder.h"

// "huxutil redact" from outside: what it writes and what it refuses.

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

const std::string kRedact = "'" HUXUTIL "' redact mara.hux ";

class Redact : public WorkingFolder {
 protected:
  Redact() {
    const std::string text =
        "\xEF\xBB\xBF?keva\n+Snapshot=\nhostname=MARA-KESTREL\nuser-name=mara\n*Chassis=\n"
        "serial=C02XK0AAJG5H\n+User-accounts=\n*usr-acc:mac=mac\n-\n-\n";
    std::ofstream("mara.hux", std::ios::binary) << fileOfOne("snapshot", blob(text));
  }

  static unsigned modeOf(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
  }
};

}  // namespace

TEST_F(Redact, WritesFilesForTheirOwnerAloneAndReplacesNoneUnasked) {
  const Outcome first = outcome(kRedact + "-o out.hux --map pairs --keep uuid --keep host");
  EXPECT_EQ(first.exitCode, 0) << first.errors;
  EXPECT_THAT(first.errors,
              AllOf(HasSubstr("kept: uuid, host\n"), HasSubstr("own places: \"mac\"\n")));
  EXPECT_THAT(sectionOf("out.hux", 0),
              AllOf(HasSubstr("\nhostname=USER-1-KESTREL\nuser-name=USER-1\n"),
                    HasSubstr("\nserial=SERIAL-1\n")));
  EXPECT_EQ(fileText("pairs"), "C02XK0AAJG5H\tSERIAL-1\nmara\tUSER-1\nmac\tUSER-2\n");
  EXPECT_EQ(modeOf("out.hux"), 0600U);
  EXPECT_EQ(modeOf("pairs"), 0600U);

  std::filesystem::permissions("pairs", std::filesystem::perms::all);
  const std::string before = fileText("pairs");
  EXPECT_EQ(outcome(kRedact + "-o pairs").exitCode, 2);
  EXPECT_EQ(outcome("ulimit -f 0; trap '' XFSZ; " + kRedact + "-f -o pairs").exitCode,
            2);  // no room
  EXPECT_EQ(fileText("pairs"), before);
  EXPECT_EQ(outcome(kRedact + "-f -o pairs").exitCode, 0);
  EXPECT_EQ(fileText("pairs").substr(0, 2), "\x78\xDA");
  EXPECT_EQ(modeOf("pairs"), 0600U);
  EXPECT_EQ(outcome(kRedact + "-f -o /dev/stdout | cmp - pairs").exitCode, 0);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 5);  // with out and err
}

TEST_F(Redact, RefusesWhatWouldGiveSecretsAway) {
  const struct {
    const char* arguments;
    int exitCode;
    const char* errors;
  } kCases[] = {
      {"",                           2, "-o has to name the new file"                     },
      {"-o mara-KESTREL.hux",        2, "the name holds a secret of the file (host)"      },
      {"-o a.hux --keep names",      2, "no such kind; the kinds are serial, hardware-add"},
      {"-o folder/a.hux",            2, "No such file or directory"                       },
      {"-f -o mara.hux",             2, "is the file itself"                              },
      {"-f -o a.hux --map link",     2, "link: is the file itself"                        },
      {"-f -o a.hux --map a.hux",    2, "cannot be both"                                  },
      {"-f -o none/a.hux --map map", 2, "none/a.hux: No such file or directory"           },
      {"--dry-run",                  0, ""                                                },
      {"-o kestrel.hux --keep host", 0, "kept: host"                                      },
  };
  std::filesystem::create_symlink("mara.hux", "link");
  const std::string before = fileText("mara.hux");
  for (const auto& [arguments, exitCode, errors] : kCases) {
    const Outcome seen = outcome(kRedact + arguments);
    EXPECT_EQ(seen.exitCode, exitCode) << arguments;
    EXPECT_THAT(seen.errors, HasSubstr(errors)) << arguments;
  }
  EXPECT_EQ(fileText("mara.hux"), before);
  EXPECT_FALSE(std::filesystem::exists("a.hux"));
  EXPECT_FALSE(std::filesystem::exists("map"));  // of nothing
  const std::string counts = outcome(kRedact + "--dry-run --keep user").output;
  EXPECT_THAT(counts, AllOf(HasSubstr("serial                 1       1\n"),
                            HasSubstr("user                   2    kept\n")));
  std::filesystem::resize_file("mara.hux", 100);
  EXPECT_EQ(outcome(kRedact + "-o b.hux").exitCode, 2);
  EXPECT_FALSE(std::filesystem::exists("b.hux"));
}
