#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "fakes/LocaleScope.h"
#include "fakes/TestUrl.h"
#include "notifications/DesktopNotifications.h"

namespace navora {

// The notifications of a signed-in user on a fake platform. The test plays the service and the
// desktop: every answer is explicit.
class DesktopNotificationsTest : public testing::Test {
 protected:
  DesktopNotificationsTest() {
    webView = std::make_shared<FakeWebView>(platform.log(), WebViewConfiguration{origin});
    webView->setUrl(origin);
    webView->cookies = {{"tolvin_session", "abc", "navora.example", "/", true, std::nullopt}};
    notifications =
        std::make_unique<DesktopNotifications>(dependenciesOf(platform), webView, origin);
    notifications->onOpen = [this](const Url& url) { opened.push_back(url); };
  }

  static DesktopNotifications::Dependencies dependenciesOf(FakePlatform& platform) {
    return {.backgroundQueue = platform.backgroundQueue(),
            .dialogs = platform.dialogs(),
            .mainQueue = platform.mainQueue(),
            .notificationCenter = platform.notificationCenter(),
            .system = platform.system(),
            .userDefaults = platform.userDefaults(),
            .makeHttpSession =
                [&platform](const auto& configuration) {
                  return platform.makeHttpSession(configuration);
                },
            .deniedText = [&platform] { return platform.wording().notificationsDenied; }};
  }

  static Json item(const std::string& id, const std::string& kind = "message") {
    return {{"id", id},          {"kind", kind},   {"read", false},
            {"resolved", false}, {"roomId", "r1"}, {"text", "Text of " + id}};
  }

  // The steps of a poll.
  void answerUser(const std::string& id = "u1") {
    webView->answerCookies();
    platform.network().answer(200, Json{{"user", {{"id", id}}}}.dump());
  }
  void answerSettings(const std::string& quietHours = "off") {
    const Json reply{{"settings", {{"notifyPrefs", "{}"}, {"quietHours", quietHours}}},
                     {"timeZone", "UTC"}};
    platform.network().answer(200, reply.dump());
  }
  void answerList(const std::vector<Json>& items) {
    const Json kinds{{{"key", "message"}, {"default", "phone"}},
                     {{"key", "quiet"}, {"default", "inbox"}}};
    platform.network().answer(200, Json{{"notifications", items}, {"kinds", kinds}}.dump());
  }
  // Runs a poll until the list is handed to the background.
  void sendList(const std::vector<Json>& items, const std::string& quietHours = "off") {
    answerUser();
    answerSettings(quietHours);
    answerList(items);
  }
  // Runs a poll until the desktop is asked for its authorization status.
  void answerPoll(const std::vector<Json>& items, const std::string& user = "u1") {
    answerUser(user);
    answerSettings();
    answerList(items);
    platform.backgroundQueue().finishAll();
  }
  // Runs a whole poll; the desktop accepts every notification.
  void completePoll(const std::vector<Json>& items, const std::string& user = "u1") {
    answerPoll(items, user);
    if (center.statusQuestions() > 0) center.answerStatus();
    while (center.addsUnderWay() > 0)
      center.finishAdd();
  }
  void startWithBaseline(const std::vector<Json>& items = {}) {
    notifications->start();
    completePoll(items);
  }
  void nextTick() { platform.mainQueue().advance(std::chrono::seconds(60)); }

  std::vector<std::string> shown() const {
    std::vector<std::string> identifiers;
    for (const UserNotification& notification : center.added)
      identifiers.push_back(notification.identifier);
    return identifiers;
  }
  std::vector<std::string> paths() {
    std::vector<std::string> result;
    for (const HttpRequest& request : platform.network().requests)
      result.push_back(request.url.path());
    return result;
  }

  const Url origin = testUrl("https://navora.example/");
  LocaleScope locale;
  FakePlatform platform;
  FakeNotificationCenter& center = platform.notificationCenter();
  std::shared_ptr<FakeWebView> webView;
  std::vector<Url> opened;
  std::unique_ptr<DesktopNotifications> notifications;
};

}  // namespace navora
