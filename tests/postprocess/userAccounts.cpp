#include "postprocess/userAccounts.h"

#include <gmock/gmock.h>

#include "shortForms.h"
#include "support/fakeHost.h"

// An empty listing is asked for three times.
TEST(UserAccounts, HandNoNameToTheShellThatItWouldInterpret) {
  FakeHost host;
  const std::string longest(255, 'b');
  const std::string kList = "ls -1 /Users/";
  EXPECT_EQ(snapshotOf(PostProcessUserAccounts, host), "*Snapshot=\n");
  host.outputs[kList] = "a\"b\na$(ls)\na`ls`\na\\\n a'b;c|d*\n\n\xFF\n\x01\n" +
                        std::string(256, 'a') + "\n" + longest + "\n";
  EXPECT_EQ(snapshotOf(PostProcessUserAccounts, host), "+Snapshot=\n*User-accounts=\n-\n");
  EXPECT_THAT(host.commands,
              testing::ElementsAre(kList, kList, kList, kList, R"(dscl . -read "/users/ a'b;c|d*")",
                                   "dscl . -read \"/users/" + longest + "\""));
}
