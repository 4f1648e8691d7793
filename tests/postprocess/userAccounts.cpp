#include "postprocess/userAccounts.h"

#include <gmock/gmock.h>

#include "shortForms.h"
#include "support/fakeHost.h"

// An empty listing is asked for three times.
TEST(UserAccounts, HandNoNameToTheShellThatItWouldInterpret) {
  FakeHost host;
  const std::string kList = "ls -1 /Users/";
  EXPECT_EQ(snapshotOf(PostProcessUserAccounts, host), "*Snapshot=\n");
  host.outputs[kList] = "a\"b\na$(ls)\na`ls`\na\\\n a'b;c|d*\n";
  EXPECT_EQ(snapshotOf(PostProcessUserAccounts, host), "+Snapshot=\n*User-accounts=\n-\n");
  EXPECT_THAT(host.commands, testing::ElementsAre(kList, kList, kList, kList,
                                                  R"(dscl . -read "/users/ a'b;c|d*")"));
}

TEST(UserAccounts, HaveARecordWithANameBehindTheHomeFolder) {
  const std::pair<const char*, bool> cases[] = {
      {"\nNFSHomeDirectory: /\nRecordName: a\nRecordType: x\n", true },
      {"RecordName: a\nRecordType: x\nNFSHomeDirectory: /\n",   false},
      {"\nNFSHomeDirectory: /\nRecordName: a\n",                false},
  };
  for (const auto& [output, isUser] : cases) {
    EXPECT_EQ(parseUserRecord(output).has_value(), isUser) << output;
  }
}
