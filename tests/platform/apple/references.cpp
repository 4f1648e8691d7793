#include <CoreFoundation/CoreFoundation.h>
#include <gmock/gmock.h>

#include "platform/apple/cfValue.h"
#include "support/apple/standIn.h"

using platform::apple::makeString;
using platform::apple::Owned;
using platform::apple::textOf;
using testing::ElementsAre;

namespace {

// Every test of this program fails that leaves a reference behind or uses what it has released.
class ReferenceCheck : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo&) override {
    for (const std::string& complaint : standIn::takeComplaints()) ADD_FAILURE() << complaint;
  }
};

[[maybe_unused]] const bool kChecked = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new ReferenceCheck);
  return true;
}();

}  // namespace

TEST(References, AreCountedByTheStandIn) {
  CFStringRef string = makeString("s").release();
  EXPECT_THAT(standIn::takeComplaints(), ElementsAre("never released: s"));

  string = makeString("s").release();
  CFRelease(string);
  CFRelease(string);
  textOf(string);
  EXPECT_THAT(standIn::takeComplaints(), ElementsAre("CFRelease: a released object (s)",
                                                     "CFStringGetLength: a released object (s)",
                                                     "CFStringGetBytes: a released object (s)"));

  CFRelease(nullptr);
  EXPECT_THAT(standIn::takeComplaints(), ElementsAre("CFRelease: no object"));
}
