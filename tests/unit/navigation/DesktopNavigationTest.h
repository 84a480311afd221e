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
    navigation->window = window;
    log().take();
  }

  EventLog& log() { return platform.log(); }
  FakeDialogs& dialogs() { return platform.dialogs(); }

  const Url origin = testUrl("https://navora.example");
  const FrameInfo trustedFrame = mainFrame("https://navora.example/today");

  LocaleScope locale;
  FakePlatform platform;
  FakeMainWindowDelegate windowDelegate;
  std::shared_ptr<MainWindow> window = platform.makeMainWindow({}, windowDelegate);
  FakeWebView webView{platform.log(), {origin}};
  std::unique_ptr<DesktopNavigation> navigation = std::make_unique<DesktopNavigation>(
      origin, platform.dialogs(), platform.system(), platform.workspace());
};

}  // namespace navora
