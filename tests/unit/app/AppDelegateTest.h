#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/NavoraAppDelegate.h"
#include "fakes/FakePlatform.h"
#include "fakes/LocaleScope.h"
#include "fakes/TestUrl.h"

namespace navora {

// The application on a fake platform. Tests prepare the platform, launch, and say what the user,
// the page and the system do.
class AppDelegateTest : public testing::Test {
 protected:
  // Makes the delegate and lets it start up.
  void launch() {
    create();
    delegate->applicationDidFinishLaunching();
  }

  // The application runs and shows this page; the log is empty.
  void launchShowing(const std::optional<Url>& url) {
    launch();
    webView().setUrl(url);
    log().take();
  }

  // An update asks for a restart, and the page has nothing unsaved.
  void prepareRestart() {
    delegate->prepareForUpdate([](const std::optional<std::string>&) {});
    while (webView().evaluationsUnderWay() > 0)
      webView().finishEvaluation(Json("{}"));
    log().take();
  }
  // The restart does not come.
  void giveUpRestart() { platform.updater().driver->dismissUpdateInstallation(); }

  void create() { delegate = std::make_unique<NavoraAppDelegate>(platform); }

  EventLog& log() { return platform.log(); }
  FakeSystem& system() { return platform.system(); }
  FakeMainWindow& window() { return platform.window(); }
  FakeWebView& webView() { return platform.webView(); }
  FakeErrorView& errorView() { return platform.errorView(); }

  LocaleScope locale;
  FakePlatform platform;
  std::unique_ptr<NavoraAppDelegate> delegate;
};

}  // namespace navora
