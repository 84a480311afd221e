#include "hosts/macos/notifications/MacNotificationCenter.h"

#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "contracts/MainLoop.h"
#include "frameworks/UserNotifications/NotificationState.h"

namespace navora {
namespace {

using doubles::NotificationState;
using testing::ElementsAre;
using testing::IsEmpty;

class RecordingDelegate final : public NotificationCenterDelegate {
 public:
  PresentationOptions options = {.banner = true, .sound = true};
  std::vector<std::optional<std::string>> opened;

  PresentationOptions willPresentNotification() override { return options; }
  void didReceiveNotification(std::optional<std::string> url) override { opened.push_back(url); }
  void authorizationMayHaveChanged() override {}
};

class MacNotificationCenterTest : public testing::Test {
 protected:
  MacNotificationCenterTest() { center_->setDelegate(&delegate_); }
  ~MacNotificationCenterTest() override {
    if (center_) center_->setDelegate(nullptr);
  }

  static UserNotification notification(const std::string& identifier) {
    return {.identifier = identifier,
            .title = "Title of " + identifier,
            .body = "Body",
            .url = "https://navora.example/#" + identifier};
  }
  std::optional<PlatformError> add(const UserNotification& notification) {
    std::optional<std::optional<PlatformError>> result;
    center_->add(notification, [&](auto error) { result = std::move(error); });
    EXPECT_FALSE(result);
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    return result.value_or(std::nullopt);
  }
  AuthorizationStatus status() {
    std::optional<AuthorizationStatus> result;
    center_->authorizationStatus([&](AuthorizationStatus status) { result = status; });
    EXPECT_FALSE(result);
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    return result.value_or(AuthorizationStatus::notDetermined);
  }
  NotificationCenter::AuthorizationResult request() {
    std::optional<NotificationCenter::AuthorizationResult> result;
    center_->requestAuthorization({.alert = true, .sound = true},
                                  [&](auto given) { result = std::move(given); });
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    return result.value_or(false);
  }

  RecordingDelegate delegate_;
  std::optional<MacNotificationCenter> center_{std::in_place};
};

TEST_F(MacNotificationCenterTest, ReportsEveryStatus) {
  const std::pair<UNAuthorizationStatus, AuthorizationStatus> cases[] = {
      {UNAuthorizationStatusNotDetermined, AuthorizationStatus::notDetermined},
      {UNAuthorizationStatusDenied, AuthorizationStatus::denied},
      {UNAuthorizationStatusAuthorized, AuthorizationStatus::authorized},
      {UNAuthorizationStatusProvisional, AuthorizationStatus::provisional},
  };
  for (const auto& [theirs, ours] : cases) {
    NotificationState::shared().status = theirs;
    EXPECT_EQ(status(), ours);
  }
}

TEST_F(MacNotificationCenterTest, AsksForAlertsAndSounds) {
  const auto result = request();
  ASSERT_TRUE(result);
  EXPECT_TRUE(*result);
  EXPECT_EQ(NotificationState::shared().requested,
            UNAuthorizationOptionAlert | UNAuthorizationOptionSound);
  EXPECT_EQ(status(), AuthorizationStatus::authorized);
}

TEST_F(MacNotificationCenterTest, ReportsARefusal) {
  NotificationState::shared().grants = false;
  const auto result = request();
  ASSERT_TRUE(result);
  EXPECT_FALSE(*result);
}

TEST_F(MacNotificationCenterTest, ShowsNotifications) {
  NotificationState::shared().status = UNAuthorizationStatusAuthorized;
  EXPECT_EQ(add(notification("a")), std::nullopt);
  UserNotification silent = notification("b");
  silent.defaultSound = false;
  EXPECT_EQ(add(silent), std::nullopt);
  const auto& shown = NotificationState::shared().shown;
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[0].title, "Title of a");
  EXPECT_EQ(shown[0].body, "Body");
  EXPECT_TRUE(shown[0].hasSound);
  EXPECT_FALSE(shown[1].hasSound);
}

TEST_F(MacNotificationCenterTest, ReportsWhyANotificationIsNotShown) {
  const auto error = add(notification("a"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain, "UNErrorDomain");
  EXPECT_EQ(error->localizedDescription, "Notifications are not allowed for this application");
}

TEST_F(MacNotificationCenterTest, ReportsTheNotificationsThatTheUserOpens) {
  NotificationState::shared().status = UNAuthorizationStatusAuthorized;
  add(notification("a"));
  doubles::clickNotification("a");
  // The delegate is called on the main thread only.
  EXPECT_THAT(delegate_.opened, IsEmpty());
  runPendingEvents();
  EXPECT_THAT(delegate_.opened, ElementsAre("https://navora.example/#a"));
}

TEST_F(MacNotificationCenterTest, AnOpenedNotificationMayHaveNoAddress) {
  doubles::clickNotificationWithUserInfo(@{});
  doubles::clickNotificationWithUserInfo(@{@"url" : [NSNumber numberWithInteger:1]});
  runPendingEvents();
  EXPECT_THAT(delegate_.opened, ElementsAre(std::nullopt, std::nullopt));
}

TEST_F(MacNotificationCenterTest, PresentsAsTheDelegateSays) {
  NotificationState::shared().status = UNAuthorizationStatusAuthorized;
  add(notification("a"));
  doubles::presentNotification("a");
  ASSERT_TRUE(waitUntil([] { return doubles::presentationOptions().has_value(); }));
  EXPECT_EQ(*doubles::presentationOptions(),
            UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionSound);
}

TEST_F(MacNotificationCenterTest, PresentsNothingWithoutADelegate) {
  NotificationState::shared().status = UNAuthorizationStatusAuthorized;
  add(notification("a"));
  center_->setDelegate(nullptr);
  doubles::presentNotification("a");
  doubles::clickNotification("a");
  ASSERT_TRUE(waitUntil([] { return doubles::presentationOptions().has_value(); }));
  EXPECT_EQ(*doubles::presentationOptions(), 0U);
  EXPECT_THAT(delegate_.opened, IsEmpty());
}

// The system's threads may hold the forwarder for longer than the center exists.
TEST_F(MacNotificationCenterTest, IsNotCalledOnceItIsDestroyed) {
  NotificationState::shared().status = UNAuthorizationStatusAuthorized;
  add(notification("a"));
  int completions = 0;
  center_->add(notification("b"), [&](const auto&) { ++completions; });
  center_->authorizationStatus([&](AuthorizationStatus) { ++completions; });
  doubles::clickNotification("a");
  doubles::presentNotification("a");
  center_.reset();
  ASSERT_TRUE(waitUntil([] { return doubles::presentationOptions().has_value(); }));
  runPendingEvents();
  EXPECT_EQ(completions, 0);
  EXPECT_THAT(delegate_.opened, IsEmpty());
  doubles::clickNotification("a");
}

TEST_F(MacNotificationCenterTest, DestroysCompletionsOnTheMainThread) {
  struct Witness {
    explicit Witness(std::thread::id& thread) : destroyedOn(thread) {}
    ~Witness() { destroyedOn = std::this_thread::get_id(); }
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;
    std::thread::id& destroyedOn;
  };
  std::thread::id thread;
  center_->authorizationStatus(
      [witness = std::make_shared<Witness>(thread)](AuthorizationStatus) {});
  ASSERT_TRUE(waitUntil([&] { return thread != std::thread::id(); }));
  EXPECT_EQ(thread, std::this_thread::get_id());
}

}  // namespace
}  // namespace navora
