#include "hosts/macos/system/MacWorkspace.h"

#include <gmock/gmock.h>

#include "fakes/TestUrl.h"
#include "frameworks/AppKit/AppKitState.h"

namespace navora {
namespace {

using doubles::AppKitState;
using testing::ElementsAre;
using testing::IsEmpty;

class MacWorkspaceTest : public testing::Test {
 protected:
  MacWorkspace workspace_;
};

TEST_F(MacWorkspaceTest, OpensAddresses) {
  workspace_.open(testUrl("https://other.example/page?a=1#b"));
  EXPECT_THAT(AppKitState::shared().openedUrls, ElementsAre("https://other.example/page?a=1#b"));
}

TEST_F(MacWorkspaceTest, DoesNothingIfThereIsNoProgramForTheAddress) {
  AppKitState::shared().opensUrls = false;
  workspace_.open(testUrl("tel:+123"));
  EXPECT_THAT(AppKitState::shared().openedUrls, IsEmpty());
}

TEST_F(MacWorkspaceTest, ReturnsTheApplicationWithTheKeyboard) {
  EXPECT_EQ(workspace_.frontmostApplication(), nullptr);
  AppKitState::shared().frontmost = "Editor";
  const auto application = workspace_.frontmostApplication();
  ASSERT_NE(application, nullptr);
  EXPECT_FALSE(application->isTerminated());
  application->activate();
  EXPECT_THAT(AppKitState::shared().activated, ElementsAre("Editor"));
  AppKitState::shared().frontmostIsTerminated = true;
  EXPECT_TRUE(application->isTerminated());
}

TEST_F(MacWorkspaceTest, ReturnsTheScreensTheMainOneFirst) {
  AppKitState::shared().screens = {{{{0, 0}, {1440, 900}}, {{0, 50}, {1440, 825}}},
                                   {{{-1920, 0}, {1920, 1080}}, {{-1920, 0}, {1920, 1080}}}};
  const Screen main{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 50, 1440, 825}};
  const Screen other{.frame = {-1920, 0, 1920, 1080}, .visibleFrame = {-1920, 0, 1920, 1080}};
  EXPECT_THAT(workspace_.screens(), ElementsAre(main, other));
  EXPECT_EQ(workspace_.mainScreen(), main);
  AppKitState::shared().screens.clear();
  EXPECT_EQ(workspace_.mainScreen(), std::nullopt);
}

TEST_F(MacWorkspaceTest, ReturnsWhereTheMouseIs) {
  AppKitState::shared().mouse = {12.5, 700};
  EXPECT_EQ(workspace_.mouseLocation(), (Point{12.5, 700}));
}

}  // namespace
}  // namespace navora
