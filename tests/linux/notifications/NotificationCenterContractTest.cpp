#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "end_to_end/driver/BusConnection.h"
#include "end_to_end/driver/FakeNotificationDaemon.h"
#include "fakes/FakeNotificationCenter.h"
#include "fakes/LocaleScope.h"
#include "hosts/linux/notifications/LinuxNotificationCenter.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The contract of NotificationCenter, checked with the Linux host's and with the fake of the core's
// tests.
class FakeDesktop {
 public:
  FakeNotificationCenter* center() { return center_.get(); }
  void destroyCenter() { center_.reset(); }
  void makeCenter() { center_ = std::make_unique<FakeNotificationCenter>(); }

  void permit() { change(true); }
  void refuse() { change(false); }
  // Completes every pending call.
  void answer() {
    while (center_ && center_->statusQuestions() > 0) {
      center_->status =
          isPermitted_ ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
      center_->answerStatus();
    }
    while (center_ && center_->requestQuestions() > 0)
      center_->answerRequest(isPermitted_);
    while (center_ && center_->addsUnderWay() > 0) {
      center_->finishAdd(isPermitted_ ? std::nullopt
                                      : std::optional(PlatformError{"Fake", 1, "No"}));
    }
  }

  void click(const UserNotification& notification) { center_->click(notification.url); }

 private:
  void change(bool isPermitted) {
    isPermitted_ = isPermitted;
    center_->changeStatus(isPermitted ? AuthorizationStatus::authorized
                                      : AuthorizationStatus::denied);
  }

  std::unique_ptr<FakeNotificationCenter> center_ = std::make_unique<FakeNotificationCenter>();
  bool isPermitted_ = false;
};

class LinuxDesktop {
 public:
  LinuxNotificationCenter* center() { return center_.get(); }
  void destroyCenter() { center_.reset(); }
  void makeCenter() { center_ = std::make_unique<LinuxNotificationCenter>(); }

  void permit() {
    daemon_ = std::make_unique<driver::FakeNotificationDaemon>(TestDesktop::sessionBusAddress());
  }
  void refuse() {
    daemon_.reset();
    // The bus releases the name asynchronously.
    EXPECT_TRUE(waitUntil([&] { return !bus_.nameHasOwner("org.freedesktop.Notifications"); }));
  }
  // The service replies by itself.
  void answer() {}

  void click(const UserNotification& notification) {
    for (const auto& shown : daemon_->notifications()) {
      if (shown.summary == notification.title) return daemon_->click(shown.id);
    }
    ADD_FAILURE() << notification.title << " is not shown";
  }

 private:
  driver::BusConnection bus_{TestDesktop::sessionBusAddress()};
  std::unique_ptr<driver::FakeNotificationDaemon> daemon_;
  std::unique_ptr<LinuxNotificationCenter> center_ = std::make_unique<LinuxNotificationCenter>();
};

class ContractDelegate final : public NotificationCenterDelegate {
 public:
  std::vector<std::optional<std::string>> opened;
  int changes = 0;

  PresentationOptions willPresentNotification() override { return {.banner = true, .sound = true}; }
  void didReceiveNotification(std::optional<std::string> url) override { opened.push_back(url); }
  void authorizationMayHaveChanged() override { ++changes; }
};

template <typename Desktop>
class NotificationCenterContractTest : public testing::Test {
 protected:
  ~NotificationCenterContractTest() override {
    if (desktop_.center() != nullptr) desktop_.center()->setDelegate(nullptr);
  }

  NotificationCenter& center() { return *desktop_.center(); }

  static UserNotification notification(const std::string& identifier) {
    return {identifier, "Title of " + identifier, "Body", true,
            "https://navora.example/#" + identifier};
  }

  testing::AssertionResult answersUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
      if (!condition()) desktop_.answer();
      return condition();
    });
  }
  AuthorizationStatus status() {
    std::optional<AuthorizationStatus> answer;
    center().authorizationStatus([&](AuthorizationStatus status) { answer = status; });
    EXPECT_TRUE(answersUntil([&] { return answer.has_value(); }));
    return answer.value_or(AuthorizationStatus::notDetermined);
  }
  // Adds the notification and returns whether it succeeded.
  bool add(const UserNotification& notification) {
    std::optional<bool> taken;
    center().add(notification,
                 [&](const std::optional<PlatformError>& failure) { taken = !failure; });
    EXPECT_TRUE(answersUntil([&] { return taken.has_value(); }));
    return taken.value_or(false);
  }
  // Adds the notification and waits for the first answer, which must not come during the call.
  // Later ones are recorded too; `answers` must outlive the test.
  void addAndRecord(const UserNotification& notification,
                    std::vector<std::optional<PlatformError>>& answers) {
    center().add(notification, [&answers](std::optional<PlatformError> failure) {
      answers.push_back(std::move(failure));
    });
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(answersUntil([&] { return !answers.empty(); }));
  }
  // Waits until earlier clicks have been reported: the service processes calls in order.
  void settleClicks() {
    EXPECT_TRUE(add(notification("after the clicks")));
    runPendingEvents();
  }

  LocaleScope locale_;
  Desktop desktop_;
};

using Desktops = testing::Types<FakeDesktop, LinuxDesktop>;
TYPED_TEST_SUITE(NotificationCenterContractTest, Desktops);

TYPED_TEST(NotificationCenterContractTest, ReportsTheCurrentStatusLater) {
  std::vector<AuthorizationStatus> answers;
  const auto note = [&](AuthorizationStatus status) { answers.push_back(status); };
  this->center().authorizationStatus(note);
  EXPECT_THAT(answers, IsEmpty());
  ASSERT_TRUE(this->answersUntil([&] { return answers.size() == 1; }));
  this->desktop_.permit();
  this->center().authorizationStatus(note);
  EXPECT_EQ(answers.size(), 1U);
  ASSERT_TRUE(this->answersUntil([&] { return answers.size() == 2; }));
  this->desktop_.refuse();
  this->center().authorizationStatus(note);
  ASSERT_TRUE(this->answersUntil([&] { return answers.size() == 3; }));
  EXPECT_THAT(answers, ElementsAre(AuthorizationStatus::denied, AuthorizationStatus::authorized,
                                   AuthorizationStatus::denied));
}

TYPED_TEST(NotificationCenterContractTest, ReportsThatTheStatusMayHaveChanged) {
  ContractDelegate delegate;
  this->center().setDelegate(&delegate);
  // Some desktops report the first status as a change.
  this->center().authorizationStatus([](AuthorizationStatus) {});
  runPendingEvents();
  for (int round = 0; round < 2; ++round) {
    int before = delegate.changes;
    this->desktop_.permit();
    ASSERT_TRUE(waitUntil([&] { return delegate.changes > before; }));
    EXPECT_EQ(this->status(), AuthorizationStatus::authorized);
    before = delegate.changes;
    this->desktop_.refuse();
    ASSERT_TRUE(waitUntil([&] { return delegate.changes > before; }));
    EXPECT_EQ(this->status(), AuthorizationStatus::denied);
  }
}

TYPED_TEST(NotificationCenterContractTest, ReportsNoChangeWithoutADelegate) {
  ContractDelegate former;
  this->center().setDelegate(&former);
  this->center().setDelegate(nullptr);
  const int before = former.changes;
  this->desktop_.permit();
  EXPECT_EQ(this->status(), AuthorizationStatus::authorized);
  runPendingEvents();
  EXPECT_EQ(former.changes, before);
}

TYPED_TEST(NotificationCenterContractTest, ReportsLaterWhetherItIsGranted) {
  std::vector<bool> answers;
  const auto note = [&](const NotificationCenter::AuthorizationResult& result) {
    ASSERT_TRUE(result);
    answers.push_back(*result);
  };
  this->center().requestAuthorization({.alert = true, .sound = true}, note);
  EXPECT_THAT(answers, IsEmpty());
  ASSERT_TRUE(this->answersUntil([&] { return answers.size() == 1; }));
  this->desktop_.permit();
  this->center().requestAuthorization({.alert = true, .sound = true}, note);
  ASSERT_TRUE(this->answersUntil([&] { return answers.size() == 2; }));
  EXPECT_THAT(answers, ElementsAre(false, true));
}

TYPED_TEST(NotificationCenterContractTest, ReportsLaterThatANotificationWasAdded) {
  this->desktop_.permit();
  std::vector<std::optional<PlatformError>> answers;
  this->addAndRecord(this->notification("a"), answers);
  EXPECT_THAT(answers, ElementsAre(std::nullopt));
  // The completion is called once.
  ASSERT_TRUE(this->add(this->notification("b")));
  EXPECT_EQ(answers.size(), 1U);
}

TYPED_TEST(NotificationCenterContractTest, ReportsLaterWhyANotificationFailed) {
  std::vector<std::optional<PlatformError>> answers;
  this->addAndRecord(this->notification("a"), answers);
  ASSERT_EQ(answers.size(), 1U);
  ASSERT_TRUE(answers[0]);
  EXPECT_FALSE(answers[0]->localizedDescription.empty());
  // A second attempt may succeed.
  this->desktop_.permit();
  EXPECT_TRUE(this->add(this->notification("a")));
  EXPECT_EQ(answers.size(), 1U);
}

TYPED_TEST(NotificationCenterContractTest, CompletesAddsOfOneIdentifierInOrder) {
  this->desktop_.permit();
  std::vector<int> taken;
  for (int attempt = 1; attempt <= 3; ++attempt) {
    this->center().add(this->notification("a"), [&taken, attempt](const auto& failure) {
      EXPECT_FALSE(failure);
      taken.push_back(attempt);
    });
  }
  ASSERT_TRUE(this->answersUntil([&] { return taken.size() == 3; }));
  EXPECT_THAT(taken, ElementsAre(1, 2, 3));
}

TYPED_TEST(NotificationCenterContractTest, MayBeCalledFromACompletion) {
  this->desktop_.permit();
  std::optional<AuthorizationStatus> status;
  this->center().add(this->notification("a"), [&](const auto&) {
    this->center().authorizationStatus([&](AuthorizationStatus answer) { status = answer; });
    EXPECT_FALSE(status);
  });
  ASSERT_TRUE(this->answersUntil([&] { return status.has_value(); }));
  EXPECT_EQ(status, AuthorizationStatus::authorized);
}

TYPED_TEST(NotificationCenterContractTest, ReportsTheNotificationsThatTheUserOpens) {
  this->desktop_.permit();
  ContractDelegate delegate;
  this->center().setDelegate(&delegate);
  ASSERT_TRUE(this->add(this->notification("a")));
  ASSERT_TRUE(this->add(this->notification("b")));
  EXPECT_THAT(delegate.opened, IsEmpty());
  this->desktop_.click(this->notification("b"));
  this->desktop_.click(this->notification("a"));
  ASSERT_TRUE(this->answersUntil([&] { return delegate.opened.size() == 2; }));
  EXPECT_THAT(delegate.opened,
              ElementsAre("https://navora.example/#b", "https://navora.example/#a"));
}

TYPED_TEST(NotificationCenterContractTest, ReportsNothingWithoutADelegate) {
  this->desktop_.permit();
  ContractDelegate first;
  this->center().setDelegate(&first);
  ASSERT_TRUE(this->add(this->notification("a")));
  this->center().setDelegate(nullptr);
  this->desktop_.click(this->notification("a"));
  this->settleClicks();
  EXPECT_THAT(first.opened, IsEmpty());

  ContractDelegate next;
  this->center().setDelegate(&next);
  this->desktop_.click(this->notification("a"));
  ASSERT_TRUE(this->answersUntil([&] { return !next.opened.empty(); }));
  EXPECT_THAT(next.opened, ElementsAre("https://navora.example/#a"));
  EXPECT_THAT(first.opened, IsEmpty());
}

TYPED_TEST(NotificationCenterContractTest, ACompletionMayDestroyTheCenter) {
  this->desktop_.permit();
  bool answered = false;
  this->center().add(this->notification("a"), [&](const auto&) {
    this->desktop_.destroyCenter();
    answered = true;
  });
  EXPECT_TRUE(this->answersUntil([&] { return answered; }));
}

TYPED_TEST(NotificationCenterContractTest, CallsNoCompletionAfterItIsDestroyed) {
  this->desktop_.permit();
  int answers = 0;
  this->center().authorizationStatus([&](AuthorizationStatus) { ++answers; });
  this->center().requestAuthorization({}, [&](const auto&) { ++answers; });
  this->center().add(this->notification("a"), [&](const auto&) { ++answers; });
  this->desktop_.destroyCenter();
  this->desktop_.makeCenter();
  // Replies arrive in order.
  ASSERT_TRUE(this->add(this->notification("b")));
  EXPECT_EQ(answers, 0);
}

}  // namespace
}  // namespace navora
