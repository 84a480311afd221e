#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "end_to_end/driver/EndToEndTest.h"
#include "end_to_end/driver/FakeNotificationDaemon.h"

namespace navora::driver {
namespace {

using testing::ElementsAre;

Json message(const std::string& text) {
  return {{"kind", "message"}, {"roomId", "room one"}, {"lead", "Ines:"}, {"text", text}};
}

// A signed-in user on a desktop with a notification daemon.
class NotificationsTest : public EndToEndTest {
 protected:
  void SetUp() override {
    if (hasDaemon()) startDaemon();
    EndToEndTest::SetUp();
    if (HasFatalFailure()) return;
    signIn();
    poll();
  }
  virtual bool hasDaemon() const { return true; }

  void startDaemon() {
    daemon = std::make_unique<FakeNotificationDaemon>(desktop().sessionBusAddress());
  }

  // Triggers a poll of the application and waits for its replies.
  void poll() {
    const std::size_t before = polls();
    command("enable");
    serviceClient().waitForRequests("GET", "/api/notifications", before + 1);
    synchronize();
  }
  // Counts the requests for the list, those of the page included.
  std::size_t polls() { return serviceClient().requests("GET", "/api/notifications").size(); }

  void command(const std::string& name) {
    page().evaluate("window.webkit.messageHandlers.navoraNotifications.postMessage('" + name +
                    "')");
  }
  // Waits until the application has handled all earlier messages of the page.
  void synchronize() {
    page().evaluate(
        "await new Promise(resolve => {"
        "  addEventListener('tolvin:notificationschange', resolve, {once: true});"
        "  window.webkit.messageHandlers.navoraNotifications.postMessage('status');"
        "})");
  }

  std::vector<FakeNotificationDaemon::Notification> waitForNotifications(std::size_t count) {
    waitUntil([&] { return daemon->notifications().size() >= count; },
              std::to_string(count) + " notifications are shown");
    return daemon->notifications();
  }
  std::vector<std::string> shownTexts() {
    std::vector<std::string> texts;
    for (const auto& notification : daemon->notifications())
      texts.push_back(notification.body);
    return texts;
  }
  Json state() { return page().evaluate("return window.NavoraNotificationState"); }

  std::unique_ptr<FakeNotificationDaemon> daemon;
};

TEST_F(NotificationsTest, ShowsEachNewItemOnceAndNoOlderOnes) {
  EXPECT_TRUE(daemon->notifications().empty());
  serviceClient().addNotification(message("One & <b>two</b>"));
  poll();
  const auto shown = waitForNotifications(1).front();
  EXPECT_EQ(shown.applicationName, "Navora");
  EXPECT_EQ(shown.summary, "Navora");
  EXPECT_EQ(shown.body, "Ines: One &amp; &lt;b&gt;two&lt;/b&gt;");
  serviceClient().addNotification(message("Three"));
  poll();
  waitForNotifications(2);
  poll();
  poll();
  EXPECT_THAT(shownTexts(), ElementsAre("Ines: One &amp; &lt;b&gt;two&lt;/b&gt;", "Ines: Three"));
}

TEST_F(NotificationsTest, OpensTheDestinationOfAClickedNotification) {
  serviceClient().addNotification(message("Come over"));
  poll();
  const auto shown = waitForNotifications(1).front();
  const auto window = application().waitForMainWindow();
  desktop().display().close(window.id);
  application().waitUntilMainWindowHidden();
  page().evaluate("window.kept = 'the same page'");

  daemon->click(shown.id);
  desktop().display().waitUntilActive(application().waitForMainWindow().id);
  page().waitUntilTrue("location.hash === '#circles?room=room%20one'", "the room is shown");
  EXPECT_EQ(page().evaluate("return window.kept"), "the same page");
}

TEST_F(NotificationsTest, KeepsQuietHoursAndTheUsersChannels) {
  serviceClient().changeSettings({{"quietHours", "unreadable"}});
  serviceClient().addNotification(message("At night"));
  poll();
  serviceClient().changeSettings(
      {{"quietHours", "off"}, {"notifyPrefs", R"({"message": "inbox"})"}});
  serviceClient().addNotification(message("For the list only"));
  poll();
  serviceClient().changeSettings({{"notifyPrefs", "{}"}});
  serviceClient().addNotification(message("Now"));
  poll();
  waitForNotifications(1);
  EXPECT_THAT(shownTexts(), ElementsAre("Ines: Now"));
}

TEST_F(NotificationsTest, SurvivesInvalidReplies) {
  const std::vector<Json> faults{{{"status", 500}},
                                 {{"garbage", true}},
                                 {{"drop", "during"}, {"bytes", 10}},
                                 {{"oversize", 1024 * 1024 + 1}},
                                 {{"redirect", "http://127.0.0.1:1/"}},
                                 {{"status", 200}, {"body", "<!doctype html>"}}};
  int number = 0;
  for (const Json& fault : faults) {
    const std::string text = "Number " + std::to_string(++number);
    serviceClient().addFault("GET", "/api/settings", fault);
    serviceClient().addNotification(message(text));
    const std::size_t asked = serviceClient().requests("GET", "/api/settings").size();
    command("enable");
    serviceClient().waitForRequests("GET", "/api/settings", asked + 1);
    synchronize();
    serviceClient().clearFaults();
    waitUntil(
        [&] {
          poll();
          return daemon->notifications().size() == static_cast<std::size_t>(number);
        },
        text + " is shown after all");
    EXPECT_EQ(daemon->notifications().back().body, "Ines: " + text);
  }
}

TEST_F(NotificationsTest, TakesANewBaselineForAnotherUser) {
  serviceClient().switchAccount("another");
  serviceClient().addNotification(message("For demo"));
  poll();
  poll();
  EXPECT_TRUE(daemon->notifications().empty());
}

TEST_F(NotificationsTest, ReportsTheStatusToThePageAndFollowsItsCommands) {
  EXPECT_EQ(state(), (Json{{"authorized", true}, {"enabled", true}, {"denied", false}}));
  command("test");
  command("test");
  const auto tests = waitForNotifications(2);
  EXPECT_EQ(tests[0].body, "Notifications are on for this device");
  EXPECT_EQ(tests[1].replacesId, tests[0].id);

  command("disable");
  synchronize();
  EXPECT_EQ(state(), (Json{{"authorized", true}, {"enabled", false}, {"denied", false}}));
  application().restart();
  page().waitUntilTrue("window.NavoraNotificationState?.enabled === false",
                       "it is still switched off after a restart");
  command("enable");
  page().waitUntilTrue("window.NavoraNotificationState.enabled", "it is switched on again");
}

TEST_F(NotificationsTest, LeavesNoCardBehindThatLeadsNowhere) {
  for (const char* text : {"One", "Two", "Three"})
    serviceClient().addNotification(message(text));
  poll();
  const auto shown = waitForNotifications(3);
  daemon->close(shown[0].id);
  application().restart();
  EXPECT_TRUE(daemon->open().empty());
  // The new process has cards of its own only.
  page().waitUntilTrue("location.pathname === '/'", "the user is still signed in");
  poll();
  serviceClient().addNotification(message("Four"));
  poll();
  waitForNotifications(4);
  EXPECT_EQ(daemon->open().size(), 1U);
}

TEST_F(NotificationsTest, TellsThePageWhenTheDaemonExitsAndStarts) {
  page().evaluate(
      "window.states = [];"
      "addEventListener('tolvin:notificationschange',"
      "                 () => states.push(NavoraNotificationState.authorized))");
  daemon.reset();
  page().waitUntilTrue("window.NavoraNotificationState.denied", "the page knows that it exited");
  startDaemon();
  page().waitUntilTrue("window.NavoraNotificationState.authorized", "the page knows that it runs");
  EXPECT_EQ(page().evaluate("return window.states"), (Json{false, true}));
}

TEST_F(NotificationsTest, RepeatsWhatADaemonThatExitsHasNotShown) {
  daemon->hold();
  serviceClient().addNotification(message("Please wait"));
  poll();
  waitUntil([&] { return daemon->waitingCount() == 1; }, "the daemon is asked");
  daemon.reset();
  synchronize();
  startDaemon();
  poll();
  waitForNotifications(1);
  EXPECT_THAT(shownTexts(), ElementsAre("Ines: Please wait"));
}

class NoNotificationDaemonTest : public NotificationsTest {
 protected:
  bool hasDaemon() const override { return false; }
  void SetUp() override {
    EndToEndTest::SetUp();
    if (!HasFatalFailure()) signIn();
  }
};

TEST_F(NoNotificationDaemonTest, ReportsItAndShowsEverythingOnceADaemonRuns) {
  synchronize();
  EXPECT_EQ(state(), (Json{{"authorized", false}, {"enabled", true}, {"denied", true}}));
  command("test");
  waitUntil(
      [&] {
        return hasWidget("label",
                         "Notifications are unavailable. Turn on your desktop’s notification "
                         "service and try again.");
      },
      "an alert says what to do");
  desktop().keyboard().chord("Return");

  serviceClient().waitForRequests("GET", "/api/notifications", 2);
  serviceClient().addNotification(message("Later"));
  startDaemon();
  poll();
  waitForNotifications(1);
  EXPECT_THAT(shownTexts(), ElementsAre("Ines: Later"));
}

}  // namespace
}  // namespace navora::driver
