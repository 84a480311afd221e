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

// The application on a fake platform. Tests prepare the platform, launch the application, and act
// as the user, the page and the system.
class AppDelegateTest : public testing::Test {
 protected:
  // The page that the service shows after signing in.
  static constexpr const char* home = "https://navora.example/";

  // Creates the delegate and launches the application.
  void launch() {
    create();
    delegate_->applicationDidFinishLaunching();
  }

  // Launches the application, shows this page and clears the log.
  void launchShowing(const std::optional<Url>& url) {
    launch();
    webView().setUrl(url);
    log().take();
  }

  // Prepares a restart for an update; the page has nothing unsaved.
  void prepareRestart() {
    delegate_->prepareForUpdate([](const std::optional<std::string>&) {});
    while (webView().evaluationsUnderWay() > 0)
      webView().finishEvaluation(Json("{}"));
    log().take();
  }
  // Cancels the restart.
  void giveUpRestart() { platform_.updater().driver->dismissUpdateInstallation(); }

  void create() { delegate_ = std::make_unique<NavoraAppDelegate>(platform_); }

  EventLog& log() { return platform_.log(); }
  FakeSystem& system() { return platform_.system(); }
  FakeMainWindow& window() { return platform_.window(); }
  FakeWebView& webView() { return platform_.webView(); }
  FakeErrorView& errorView() { return platform_.errorView(); }

  LocaleScope locale_;
  FakePlatform platform_;
  std::unique_ptr<NavoraAppDelegate> delegate_;
};

}  // namespace navora
