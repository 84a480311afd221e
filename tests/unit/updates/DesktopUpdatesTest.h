#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/EventLog.h"
#include "fakes/FakeMainQueue.h"
#include "fakes/FakeSystem.h"
#include "fakes/FakeUpdateBannerView.h"
#include "fakes/FakeUpdater.h"
#include "fakes/FakeWorkspace.h"
#include "fakes/LocaleScope.h"
#include "fakes/TestUrl.h"
#include "locale/DesktopLocale.h"
#include "platform/MemoryUserDefaults.h"
#include "updates/DesktopUpdates.h"

namespace navora {

// Updates with a fake updater. The test plays the updater, the user, and the application that
// decides whether it may be restarted.
class DesktopUpdatesTest : public testing::Test {
 protected:
  using Button = UpdateBannerButton;
  using Stage = UserUpdateState::Stage;
  using Progress = UpdateBannerProgress;

  DesktopUpdatesTest() { make(); }

  void make() {
    updates.reset();
    updates = std::make_unique<DesktopUpdates>(
        DesktopUpdates::Dependencies{
            .mainQueue = queue,
            .system = system,
            .workspace = workspace,
            .makeUpdater =
                [this](UpdaterUserDriver& driver, UpdaterDelegate& delegate) {
                  return std::make_unique<FakeUpdater>(session, driver, delegate);
                },
            .upToDateText = [this] { return L(upToDate); }},
        std::make_unique<FakeUpdateBannerView>(screen), policy);
    updates->showWindow = [this] { log.record("showWindow"); };
    updates->resumeEditing = [this] { log.record("resumeEditing"); };
    updates->prepareForRestart = [this](DesktopUpdates::RestartAnswer answer) {
      log.record("prepareForRestart");
      restartAnswers.push_back(std::move(answer));
    };
  }
  // Starts the updates and empties the log.
  void start() {
    updates->start();
    log.take();
  }

  UpdaterUserDriver& driver() { return *session.driver; }
  static AppcastItem item(const std::string& version = "2.0") {
    return {version, version + " (display)", std::nullopt, false};
  }
  static AppcastItem information(const std::string& url) {
    return {"2.0", "2.0", Url::parse(url), true};
  }
  UpdaterUserDriver::Choose choice() {
    return [this](UserUpdateChoice choice) {
      constexpr const char* names[] = {"skip", "install", "dismiss"};
      log.record(std::string("reply ") + names[static_cast<int>(choice)]);
    };
  }
  std::function<void()> called(const std::string& name) {
    return [this, name] { log.record(name); };
  }

  void find(const AppcastItem& found, bool userInitiated = false,
            Stage stage = Stage::notDownloaded) {
    driver().showUpdateFound(found, {stage, userInitiated}, choice());
  }
  void becomeReady() { driver().showReadyToInstallAndRelaunch(choice()); }
  // Answers the oldest pending question whether the application may be restarted.
  void answerRestart(std::optional<std::string> message = std::nullopt) {
    const auto answer = restartAnswers.at(0);
    restartAnswers.erase(restartAnswers.begin());
    answer(std::move(message));
  }
  static PlatformError error() { return {"Updates", 1, "The feed is missing."}; }

  std::string heading() const { return screen.content.title; }
  std::string detail() const { return screen.content.detail; }
  // Returns the titles of the visible buttons.
  std::vector<std::string> buttons() const {
    std::vector<std::string> titles;
    for (const auto& button : screen.content.buttons) {
      if (button.visible) titles.push_back(button.title);
    }
    return titles;
  }
  void press(Button which) { screen.press(which); }

  LocaleScope locale;
  EventLog log;
  // The Russian text that this host shows when there is no newer version.
  std::string upToDate = "Обновлений для этого Mac нет";
  FakeMainQueue queue;
  FakeSystem system{log};
  FakeWorkspace workspace{log};
  MemoryUserDefaults defaults;
  const Date launch = dateFromSecondsSince1970(1800000000);
  UpdateReminderPolicy policy{defaults, [this] { return launch + queue.elapsed(); },
                              [] { return Calendar("UTC"); }};
  FakeUpdater::Session session{log};
  FakeUpdateBannerView::Screen screen;
  std::vector<DesktopUpdates::RestartAnswer> restartAnswers;
  std::unique_ptr<DesktopUpdates> updates;
};

}  // namespace navora
