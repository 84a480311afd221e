#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/FakeDownload.h"
#include "fakes/FakePlatform.h"
#include "fakes/LocaleScope.h"
#include "fakes/TestUrl.h"
#include "navigation/DesktopNavigation.h"

namespace navora {

// A navigation on the production origin, with a window for sheets.
class DesktopNavigationTest : public testing::Test {
 protected:
  void SetUp() override {
    navigation_->window = window_;
    log().take();
  }

  // Returns the answer, which must be given once and at once.
  NavigationPolicy decide(const NavigationAction& action) {
    std::vector<NavigationPolicy> answers;
    navigation_->decidePolicyForAction(webView_, action,
                                       [&](NavigationPolicy policy) { answers.push_back(policy); });
    EXPECT_EQ(answers.size(), 1U);
    return answers.empty() ? NavigationPolicy::cancel : answers.front();
  }

  EventLog& log() { return platform_.log(); }
  FakeDialogs& dialogs() { return platform_.dialogs(); }

  const Url origin_ = testUrl("https://navora.example");
  const FrameInfo trustedFrame_ = mainFrame("https://navora.example/today");

  LocaleScope locale_;
  FakePlatform platform_;
  FakeMainWindowDelegate windowDelegate_;
  std::shared_ptr<MainWindow> window_ = platform_.makeMainWindow({}, windowDelegate_);
  FakeWebView webView_{platform_.log(), {origin_}};
  std::unique_ptr<DesktopNavigation> navigation_ = std::make_unique<DesktopNavigation>(
      origin_, platform_.dialogs(), platform_.system(), platform_.workspace(),
      [this](const auto& destination) { return platform_.makeFileReplacement(destination); });
};

}  // namespace navora
