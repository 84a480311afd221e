#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtkmm/window.h>

#include "end_to_end/driver/BusConnection.h"
#include "end_to_end/driver/FakeNotificationDaemon.h"
#include "fakes/LocaleScope.h"
#include "hosts/linux/notifications/LinuxNotificationCenter.h"
#include "hosts/linux/notifications/NotificationText.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"
#include "linux/support/Widgets.h"

#include <gdk/gdkx.h>

namespace navora {
namespace {

using driver::FakeNotificationDaemon;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

// Longer than the fake service takes unless it is held, and short enough to wait for.
std::chrono::milliseconds shortTimeout() {
  return patience() / 20;
}

class Delegate final : public NotificationCenterDelegate {
 public:
  PresentationOptions options{true, true};
  std::vector<std::optional<std::string>> opened;

  PresentationOptions willPresentNotification() override { return options; }
  void didReceiveNotification(std::optional<std::string> url) override { opened.push_back(url); }
  void authorizationMayHaveChanged() override {}
};

class LinuxNotificationCenterTest : public testing::Test {
 protected:
  LinuxNotificationCenterTest() { center_->setDelegate(&delegate_); }

  void startDaemon(std::vector<std::string> capabilities = {"actions", "body", "body-markup"}) {
    daemon_ = std::make_unique<FakeNotificationDaemon>(TestDesktop::sessionBusAddress(),
                                                       std::move(capabilities));
  }

  AuthorizationStatus status() {
    std::optional<AuthorizationStatus> answer;
    center_->authorizationStatus([&](AuthorizationStatus status) { answer = status; });
    EXPECT_FALSE(answer) << "the completion must be called later";
    EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }));
    return answer.value_or(AuthorizationStatus::notDetermined);
  }

  // Adds the notification and returns whether it succeeded.
  bool add(const UserNotification& notification) {
    std::optional<bool> taken;
    center_->add(notification,
                 [&](const std::optional<PlatformError>& failure) { taken = !failure; });
    EXPECT_TRUE(waitUntil([&] { return taken.has_value(); }));
    return taken.value_or(false);
  }

  static UserNotification notification(const std::string& identifier) {
    return {identifier, "Title", "Body", true, "https://navora.example/#" + identifier};
  }
  static UserNotification singleEvent(const std::string& identifier) {
    UserNotification event = notification(identifier);
    event.once = true;
    return event;
  }
  // Has a new service show the notification after its add() has timed out, and another one in time.
  bool showLate(const UserNotification& late) {
    center_->setTimeout(shortTimeout());
    startDaemon();
    daemon_->hold();
    EXPECT_FALSE(add(late));
    center_->setTimeout(patience());
    daemon_->release();
    // Replies arrive in order.
    return add(notification("b"));
  }
  static void reloadBus() {
    constexpr const char* bus = "org.freedesktop.DBus";
    driver::BusConnection(TestDesktop::sessionBusAddress())
        .call({bus, "/org/freedesktop/DBus", bus, "ReloadConfig"});
  }

  // Clicks a last notification: when that is reported, every earlier signal has been processed.
  void expectNothingOpened() {
    ASSERT_TRUE(add(notification("last")));
    daemon_->click(daemon_->notifications().back().id);
    ASSERT_TRUE(waitUntil([&] { return !delegate_.opened.empty(); }));
    EXPECT_THAT(delegate_.opened, ElementsAre("https://navora.example/#last"));
  }

  LocaleScope locale_;
  Delegate delegate_;
  std::unique_ptr<FakeNotificationDaemon> daemon_;
  std::unique_ptr<LinuxNotificationCenter> center_ = std::make_unique<LinuxNotificationCenter>();
};

TEST_F(LinuxNotificationCenterTest, IsDeniedWithoutAServiceAndAuthorizedWithOne) {
  EXPECT_EQ(status(), AuthorizationStatus::denied);
  startDaemon();
  EXPECT_EQ(status(), AuthorizationStatus::authorized);
  daemon_.reset();
  EXPECT_EQ(status(), AuthorizationStatus::denied);
}

TEST_F(LinuxNotificationCenterTest, GrantsARequestOnlyWithAService) {
  const auto granted = [&] {
    std::optional<bool> answer;
    center_->requestAuthorization({true, true}, [&](const auto& result) {
      answer = result && *result;
      EXPECT_TRUE(result);
    });
    EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }));
    return answer.value_or(false);
  };
  EXPECT_FALSE(granted());
  startDaemon();
  EXPECT_TRUE(granted());
}

TEST_F(LinuxNotificationCenterTest, SendsTheNotification) {
  startDaemon();
  ASSERT_TRUE(add(notification("a")));
  ASSERT_EQ(daemon_->notifications().size(), 1U);
  const auto shown = daemon_->notifications()[0];
  EXPECT_EQ(shown.applicationName, "Навора");
  EXPECT_EQ(shown.icon, "example.navora.Navora");
  EXPECT_EQ(shown.replacesId, 0U);
  EXPECT_EQ(shown.summary, "Title");
  EXPECT_EQ(shown.body, "Body");
  EXPECT_THAT(shown.actions, ElementsAre("default", "Показать Навору"));
  EXPECT_THAT(shown.hints,
              AllOf(Contains(Pair("desktop-entry", "'example.navora.Navora'")),
                    Contains(Pair("sound-name", "'message-new-instant'")),
                    Contains(Pair("urgency", "0x01")), Not(Contains(Key("suppress-sound")))));
  EXPECT_EQ(shown.expireTimeout, -1);
}

TEST_F(LinuxNotificationCenterTest, SuppressesTheSoundOfASilentNotification) {
  startDaemon();
  UserNotification silent = notification("a");
  silent.defaultSound = false;
  ASSERT_TRUE(add(silent));
  EXPECT_THAT(daemon_->notifications()[0].hints,
              AllOf(Contains(Pair("suppress-sound", "true")), Not(Contains(Key("sound-name")))));
}

TEST_F(LinuxNotificationCenterTest, EscapesTheBodyForAServiceThatParsesMarkup) {
  startDaemon();
  UserNotification hostile = notification("a");
  hostile.title = "<b>Title</b> & more";
  hostile.body = "<a href=\"x\">Body</a> &amp;";
  ASSERT_TRUE(add(hostile));
  EXPECT_EQ(daemon_->notifications()[0].summary, hostile.title);
  EXPECT_EQ(daemon_->notifications()[0].body, "&lt;a href=\"x\"&gt;Body&lt;/a&gt; &amp;amp;");
}

TEST_F(LinuxNotificationCenterTest, SendsNeitherMarkupNorActionsToAServiceWithoutThem) {
  startDaemon({"body"});
  UserNotification hostile = notification("a");
  hostile.body = "<b>&</b>";
  ASSERT_TRUE(add(hostile));
  EXPECT_EQ(daemon_->notifications()[0].body, "<b>&</b>");
  EXPECT_THAT(daemon_->notifications()[0].actions, IsEmpty());
}

TEST_F(LinuxNotificationCenterTest, ReplacesANotificationWithTheSameIdentifier) {
  startDaemon();
  ASSERT_TRUE(add(notification("test")));
  ASSERT_TRUE(add(notification("other")));
  ASSERT_TRUE(add(notification("test")));
  const auto shown = daemon_->notifications();
  EXPECT_EQ(shown[1].replacesId, 0U);
  EXPECT_EQ(shown[2].replacesId, shown[0].id);
}

TEST_F(LinuxNotificationCenterTest, DoesNotReplaceAClosedNotification) {
  startDaemon();
  ASSERT_TRUE(add(notification("test")));
  const auto first = daemon_->notifications()[0].id;
  daemon_->close(first);
  // Signals arrive in order: after this click NotificationClosed has been processed.
  ASSERT_TRUE(add(notification("other")));
  daemon_->click(daemon_->notifications()[1].id);
  ASSERT_TRUE(waitUntil([&] { return !delegate_.opened.empty(); }));
  ASSERT_TRUE(add(notification("test")));
  EXPECT_EQ(daemon_->notifications()[2].replacesId, 0U);
}

TEST_F(LinuxNotificationCenterTest, ReportsTheUrlOfAClickedNotification) {
  startDaemon();
  ASSERT_TRUE(add(notification("a")));
  ASSERT_TRUE(add(notification("b")));
  daemon_->click(daemon_->notifications()[0].id);
  ASSERT_TRUE(waitUntil([&] { return !delegate_.opened.empty(); }));
  EXPECT_THAT(delegate_.opened, ElementsAre("https://navora.example/#a"));
}

TEST_F(LinuxNotificationCenterTest, IgnoresOtherActionsAndOtherNotifications) {
  startDaemon();
  ASSERT_TRUE(add(notification("a")));
  daemon_->click(daemon_->notifications()[0].id, "settings");
  daemon_->click(4711);
  expectNothingOpened();
}

TEST_F(LinuxNotificationCenterTest, IgnoresClicksOnNotificationsOfAnEarlierService) {
  startDaemon();
  ASSERT_TRUE(add(notification("a")));
  const auto old = daemon_->notifications()[0].id;
  daemon_.reset();
  EXPECT_EQ(status(), AuthorizationStatus::denied);
  startDaemon();
  daemon_->click(old);
  expectNothingOpened();
  EXPECT_EQ(daemon_->notifications()[0].replacesId, 0U);
}

TEST_F(LinuxNotificationCenterTest, FailsWithoutAService) {
  EXPECT_FALSE(add(notification("a")));
  startDaemon();
  EXPECT_TRUE(add(notification("a")));
  EXPECT_EQ(daemon_->notifications().size(), 1U);
}

TEST_F(LinuxNotificationCenterTest, FailsIfTheServiceExitsBeforeItReplies) {
  startDaemon();
  daemon_->hold();
  std::optional<bool> taken;
  center_->add(notification("a"),
               [&](const std::optional<PlatformError>& failure) { taken = !failure; });
  ASSERT_TRUE(waitUntil([&] { return daemon_->waitingCount() == 1; }));
  EXPECT_FALSE(taken);
  daemon_.reset();
  ASSERT_TRUE(waitUntil([&] { return taken.has_value(); }));
  EXPECT_FALSE(*taken);
}

TEST_F(LinuxNotificationCenterTest, WaitsForASlowService) {
  startDaemon();
  daemon_->hold();
  std::optional<bool> taken;
  center_->add(notification("a"),
               [&](const std::optional<PlatformError>& failure) { taken = !failure; });
  ASSERT_TRUE(waitUntil([&] { return daemon_->waitingCount() == 1; }));
  daemon_->release();
  ASSERT_TRUE(waitUntil([&] { return taken.has_value(); }));
  EXPECT_TRUE(*taken);
  EXPECT_EQ(daemon_->notifications().size(), 1U);
}

TEST_F(LinuxNotificationCenterTest, DoesNotRepeatANotificationShownAfterTheTimeout) {
  ASSERT_TRUE(showLate(singleEvent("a")));
  daemon_->close(daemon_->notifications()[0].id);
  EXPECT_TRUE(add(singleEvent("a")));
  EXPECT_EQ(daemon_->notifications().size(), 2U);
  // A third one is new again.
  EXPECT_TRUE(add(singleEvent("a")));
  EXPECT_EQ(daemon_->notifications().size(), 3U);
}

TEST_F(LinuxNotificationCenterTest, RepeatsALateNotificationThatIsNoSingleEvent) {
  ASSERT_TRUE(showLate(notification("a")));
  EXPECT_TRUE(add(notification("a")));
  EXPECT_EQ(daemon_->notifications().size(), 3U);
}

TEST_F(LinuxNotificationCenterTest, ShowsALateNotificationAgainAfterTheServiceHasExited) {
  ASSERT_TRUE(showLate(singleEvent("a")));
  daemon_.reset();
  startDaemon();
  ASSERT_TRUE(add(notification("c")));
  EXPECT_TRUE(add(singleEvent("a")));
  EXPECT_EQ(daemon_->notifications().size(), 2U);
}

TEST_F(LinuxNotificationCenterTest, ReplacesANotificationShownAfterTheTimeout) {
  center_->setTimeout(shortTimeout());
  startDaemon();
  daemon_->hold();
  int completions = 0;
  std::optional<PlatformError> failure;
  center_->add(notification("a"), [&](const std::optional<PlatformError>& error) {
    failure = error;
    ++completions;
  });
  ASSERT_TRUE(waitUntil([&] { return completions > 0; }));
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->code, PlatformError::timedOutCode);
  EXPECT_NE(failure->localizedDescription, "");
  center_->setTimeout(patience());
  daemon_->release();
  UserNotification changed = notification("a");
  changed.body = "Changed meanwhile";
  ASSERT_TRUE(add(changed));
  const auto shown = daemon_->notifications();
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[1].replacesId, shown[0].id);
  EXPECT_EQ(completions, 1);
}

TEST_F(LinuxNotificationCenterTest, ReplacesAPendingNotificationInOrder) {
  startDaemon();
  daemon_->hold();
  std::vector<std::string> taken;
  for (const char* title : {"first", "second", "third"}) {
    UserNotification each = notification("a");
    each.title = title;
    center_->add(each, [&taken, title](const auto& failure) {
      taken.push_back(failure ? "failed" : title);
    });
  }
  ASSERT_TRUE(waitUntil([&] { return daemon_->waitingCount() == 1; }));
  // A later call has reached the service, so the other two are waiting in the notification center.
  center_->add(notification("b"), [](const auto&) {});
  ASSERT_TRUE(waitUntil([&] { return daemon_->waitingCount() == 2; }));
  daemon_->release();
  ASSERT_TRUE(waitUntil([&] { return taken.size() == 3; }));
  EXPECT_THAT(taken, ElementsAre("first", "second", "third"));
  const auto shown = daemon_->notifications();
  ASSERT_EQ(shown.size(), 4U);
  EXPECT_EQ(shown[0].summary, "first");
  EXPECT_EQ(shown[2].summary, "second");
  EXPECT_EQ(shown[2].replacesId, shown[0].id);
  EXPECT_EQ(shown[3].summary, "third");
  EXPECT_EQ(shown[3].replacesId, shown[0].id);
}

TEST_F(LinuxNotificationCenterTest, DoesNotShowAReplacementThatTimedOut) {
  startDaemon();
  daemon_->hold();
  std::optional<bool> firstTaken;
  center_->add(notification("a"), [&](const auto& failure) { firstTaken = !failure; });
  ASSERT_TRUE(waitUntil([&] { return daemon_->waitingCount() == 1; }));
  center_->setTimeout(shortTimeout());
  EXPECT_FALSE(add(notification("a")));
  center_->setTimeout(patience());
  daemon_->release();
  ASSERT_TRUE(waitUntil([&] { return firstTaken.has_value(); }));
  EXPECT_TRUE(*firstTaken);
  ASSERT_TRUE(add(notification("b")));
  EXPECT_EQ(daemon_->notifications().size(), 2U);
}

TEST_F(LinuxNotificationCenterTest, DoesNotShowANotificationThatTimedOut) {
  center_->setTimeout(shortTimeout());
  startDaemon();
  daemon_->hold("GetCapabilities");
  EXPECT_FALSE(add(notification("a")));
  ASSERT_EQ(daemon_->waitingCount(), 1U);
  center_->setTimeout(patience());
  daemon_->release();
  ASSERT_TRUE(add(notification("b")));
  ASSERT_EQ(daemon_->notifications().size(), 1U);
  EXPECT_EQ(daemon_->notifications()[0].replacesId, 0U);
}

TEST_F(LinuxNotificationCenterTest, MayBeDestroyedBeforeTheServiceReplies) {
  startDaemon();
  daemon_->hold();
  bool completed = false;
  center_->add(notification("a"), [&](const auto&) { completed = true; });
  ASSERT_TRUE(waitUntil([&] { return daemon_->waitingCount() == 1; }));
  center_.reset();
  daemon_->release();
  // Replies arrive in order.
  center_ = std::make_unique<LinuxNotificationCenter>();
  ASSERT_TRUE(add(notification("b")));
  EXPECT_FALSE(completed);
}

TEST_F(LinuxNotificationCenterTest, ForgetsTheOldestNotificationsBeyondItsCapacity) {
  startDaemon();
  for (int index = 0; index < 205; ++index)
    ASSERT_TRUE(add(notification(std::to_string(index))));
  daemon_->click(1);
  daemon_->click(205);
  ASSERT_TRUE(waitUntil([&] { return !delegate_.opened.empty(); }));
  EXPECT_THAT(delegate_.opened, ElementsAre("https://navora.example/#204"));
}

TEST_F(LinuxNotificationCenterTest, ReportsAReadableError) {
  std::optional<PlatformError> failure;
  center_->add(notification("a"), [&](const auto& error) { failure = error; });
  ASSERT_TRUE(waitUntil([&] { return failure.has_value(); }));
  EXPECT_THAT(failure->localizedDescription, HasSubstr("org.freedesktop.Notifications"));
  // The error's D-Bus name is meant for programs.
  EXPECT_THAT(failure->localizedDescription, Not(HasSubstr("GDBus.Error")));
}

TEST_F(LinuxNotificationCenterTest, IsAuthorizedIfTheBusCanActivateTheService) {
  const auto folder =
      std::filesystem::path(std::getenv(TestDesktop::folderVariable)) / "session-services";
  const auto file = folder / "org.freedesktop.Notifications.service";
  std::filesystem::create_directories(folder);
  std::ofstream(file) << "[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=/bin/false\n";
  reloadBus();
  EXPECT_EQ(status(), AuthorizationStatus::authorized);
  // The activation fails, which only a call finds out.
  EXPECT_FALSE(add(notification("a")));
  std::filesystem::remove(file);
  reloadBus();
  EXPECT_EQ(status(), AuthorizationStatus::denied);
}

TEST_F(LinuxNotificationCenterTest, SendsHostileTextsCleanedAndShortened) {
  startDaemon();
  UserNotification hostile = notification("a");
  hostile.title = std::string(100'000, 'x');
  hostile.body = "\xFF\xFE\n\x01" + std::string(100'000, '&');
  ASSERT_TRUE(add(hostile));
  const auto shown = daemon_->notifications()[0];
  EXPECT_EQ(shown.summary, std::string(200, 'x') + "…");
  EXPECT_THAT(shown.body, StartsWith("\xEF\xBF\xBD\xEF\xBF\xBD\n&amp;&amp;"));
  EXPECT_THAT(shown.body, EndsWith("&amp;…"));
}

TEST_F(LinuxNotificationCenterTest, PassesTheActivationTokenToGtk) {
  startDaemon();
  ASSERT_TRUE(add(notification("a")));
  const auto id = daemon_->notifications()[0].id;
  daemon_->click(id, "default", "desktop_TIME42");
  ASSERT_TRUE(waitUntil([&] { return !delegate_.opened.empty(); }));
  GdkDisplay* display = gdk_display_get_default();
  EXPECT_STREQ(gdk_x11_display_get_startup_notification_id(display), "desktop_TIME42");
  // The token of another application's notification is ignored.
  daemon_->click(4711, "default", "other_TIME43");
  daemon_->click(id);
  ASSERT_TRUE(waitUntil([&] { return delegate_.opened.size() == 2; }));
  EXPECT_STREQ(gdk_x11_display_get_startup_notification_id(display), "desktop_TIME42");
}

TEST_F(LinuxNotificationCenterTest, AsksTheDelegateOnlyWhileTheApplicationIsActive) {
  startDaemon();
  delegate_.options = {.banner = false, .sound = false};
  ASSERT_TRUE(add(notification("behind")));
  ASSERT_EQ(daemon_->notifications().size(), 1U);
  EXPECT_THAT(daemon_->notifications()[0].hints, Contains(Key("sound-name")));

  Gtk::Window window;
  window.present();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(window); }));
  ASSERT_TRUE(add(notification("hidden")));
  EXPECT_EQ(daemon_->notifications().size(), 1U);

  delegate_.options = {.banner = true, .sound = false};
  ASSERT_TRUE(add(notification("silent")));
  ASSERT_EQ(daemon_->notifications().size(), 2U);
  EXPECT_THAT(daemon_->notifications()[1].hints, Not(Contains(Key("sound-name"))));

  delegate_.options = {.banner = true, .sound = true};
  ASSERT_TRUE(add(notification("loud")));
  ASSERT_EQ(daemon_->notifications().size(), 3U);
  EXPECT_THAT(daemon_->notifications()[2].hints, Contains(Key("sound-name")));

  center_->setDelegate(nullptr);
  ASSERT_TRUE(add(notification("alone")));
  EXPECT_EQ(daemon_->notifications().size(), 4U);
}

TEST_F(LinuxNotificationCenterTest, ClosesItsNotificationsWhenItIsDestroyed) {
  startDaemon();
  for (const char* identifier : {"a", "b", "c"})
    ASSERT_TRUE(add(notification(identifier)));
  const auto shown = daemon_->notifications();
  daemon_->close(shown[1].id);
  ASSERT_TRUE(waitUntil([&] { return daemon_->open().size() == 2; }));
  // Another program's.
  driver::BusConnection other(TestDesktop::sessionBusAddress());
  other.call({"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
              "org.freedesktop.Notifications", "Notify"},
             g_variant_new_parsed("('other', uint32 0, '', 'Title', '', @as [], @a{sv} {}, -1)"));
  const std::uint32_t others = daemon_->notifications().back().id;
  center_.reset();
  EXPECT_TRUE(waitUntil([&] { return daemon_->open() == std::vector{others}; }));
}

TEST_F(LinuxNotificationCenterTest, DoesNotStartTheServiceToCloseNotifications) {
  startDaemon();
  ASSERT_TRUE(add(notification("a")));
  daemon_.reset();
  center_.reset();
  driver::BusConnection bus(TestDesktop::sessionBusAddress());
  EXPECT_FALSE(bus.nameHasOwner("org.freedesktop.Notifications"));
}

// Runs in a process of its own, because a process keeps its first connection to the session bus.
TEST(NotificationsDeathTest, DeniesEverythingWithoutASessionBus) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const EnvironmentVariable nowhere("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
        LinuxNotificationCenter center;
        std::optional<AuthorizationStatus> status;
        std::optional<bool> granted;
        std::optional<PlatformError> failure;
        center.authorizationStatus([&](AuthorizationStatus answer) { status = answer; });
        center.requestAuthorization({true, true}, [&](const auto& answer) { granted = *answer; });
        center.add({}, [&](const auto& error) { failure = error; });
        const bool answered =
            static_cast<bool>(waitUntil([&] { return status && granted && failure; }));
        const bool denied = status == AuthorizationStatus::denied && granted == false;
        std::exit(answered && denied && !failure->localizedDescription.empty() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(NotificationTextTest, IsPlainValidUtf8) {
  EXPECT_EQ(notificationSummary("Two\nlines\x01\x7F\tand \xC2\x9B tab"), "Two lines\tand  tab");
  EXPECT_EQ(notificationSummary("Привет 👋🏽"), "Привет 👋🏽");
  EXPECT_EQ(notificationSummary("broken \xFF\xD0"), "broken \xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(notificationSummary(std::string("a\0b", 3)), "ab");
  EXPECT_EQ(notificationSummary(""), "");
  EXPECT_EQ(notificationBody("a\nb & <c>", false), "a\nb & <c>");
  EXPECT_EQ(notificationBody("a\nb & <c>", true), "a\nb &amp; &lt;c&gt;");
}

TEST(NotificationTextTest, CutsLongTextsBetweenCharacters) {
  std::string family;
  for (int count = 0; count < 300; ++count)
    family += "👨‍👩‍👧";
  const std::string summary = notificationSummary(family);
  EXPECT_EQ(summary.size(),
            200 * std::string("👨‍👩‍👧").size() + std::string("…").size());
  EXPECT_TRUE(summary.ends_with("👨‍👩‍👧…"));
  const std::string body = notificationBody(std::string(100'000, '<'), true);
  EXPECT_EQ(body.size(), 2000 * std::string("&lt;").size() + std::string("…").size());
}

TEST(NotificationTextTest, CutsHugeTextsWithoutProcessingAllOfThem) {
  std::string marks;
  for (int count = 0; count < 50'000; ++count)
    marks += "\u0301";
  const std::string title = notificationSummary("ab" + marks);
  EXPECT_EQ(title, "a…");
  const std::string oneCharacter = notificationSummary("a" + marks);
  EXPECT_TRUE(oneCharacter.starts_with("a\u0301"));
  EXPECT_TRUE(oneCharacter.ends_with("…"));
  EXPECT_LT(oneCharacter.size(), 20'000U);
  EXPECT_EQ(notificationSummary(std::string(100'000, '\x01')), "…");
  EXPECT_EQ(notificationSummary(std::string(200, 'x')), std::string(200, 'x'));
}

}  // namespace
}  // namespace navora
