#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "hosts/linux/LinuxWorkspace.h"
#include "linux/MainLoop.h"
#include "linux/TestDesktop.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

class LinuxWorkspaceTest : public testing::Test {
 protected:
  void SetUp() override { opened_.clear(); }

  testing::AssertionResult waitForCount(std::size_t count) {
    return waitUntil([&] { return opened_.all().size() >= count; });
  }

  driver::OpenedUrls& opened_ = TestDesktop::current().openedUrls();
  LinuxWorkspace workspace_;
};

TEST_F(LinuxWorkspaceTest, HandsTheAddressToTheUsersProgramUnchanged) {
  const std::string address = "https://navora.example/a%20b?q=%22x%22&y='z'#part";
  workspace_.open(*Url::parse(address));
  ASSERT_TRUE(waitForCount(1));
  EXPECT_THAT(opened_.all(), ElementsAre(address));
}

TEST_F(LinuxWorkspaceTest, OpensMailAndTelephoneAddressesToo) {
  workspace_.open(*Url::parse("mailto:someone@navora.example"));
  workspace_.open(*Url::parse("tel:+37100000000"));
  ASSERT_TRUE(waitForCount(2));
  EXPECT_THAT(opened_.all(),
              UnorderedElementsAre("mailto:someone@navora.example", "tel:+37100000000"));
}

TEST_F(LinuxWorkspaceTest, AnAddressThatNoProgramOpensDoesNothing) {
  workspace_.open(*Url::parse("navora-unknown-scheme:something"));
  workspace_.open(*Url::parse("https://navora.example/marker"));
  ASSERT_TRUE(waitForCount(1));
  EXPECT_THAT(opened_.all(), ElementsAre("https://navora.example/marker"));
}

}  // namespace
}  // namespace navora
