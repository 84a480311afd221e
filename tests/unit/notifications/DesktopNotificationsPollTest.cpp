#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <set>

#include "unit/notifications/DesktopNotificationsTest.h"

namespace navora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class DesktopNotificationsPollTest : public DesktopNotificationsTest {};

TEST_F(DesktopNotificationsPollTest, SendsThreeRequestsInOrderWithTheUsersCookie) {
  DesktopLocale::requested = "de";
  notifications->start();
  answerPoll({});
  EXPECT_THAT(paths(), ElementsAre("/api/auth/me", "/api/settings", "/api/notifications"));
  for (const HttpRequest& request : platform.network().requests) {
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.timeoutSeconds, 60);
    EXPECT_THAT(request.headers,
                ElementsAre(Pair("Accept-Language", "de"), Pair("Accept", "application/json"),
                            Pair("Cookie", "tolvin_session=abc")));
  }
  EXPECT_THAT(platform.network().sessions,
              ElementsAre(HttpSessionConfiguration{15, 30, 1024 * 1024}));
}

TEST_F(DesktopNotificationsPollTest, SendsNoCookieWithoutAMatchingOne) {
  webView->cookies[0].path = "/api";
  notifications->start();
  webView->answerCookies();
  EXPECT_EQ(platform.network().requests[0].headers.size(), 2u);
}

TEST_F(DesktopNotificationsPollTest, ShowsNothingOfTheFirstList) {
  notifications->start();
  completePoll({item("b"), item("a")});
  EXPECT_EQ(center.statusQuestions(), 0u);
  nextTick();
  completePoll({item("b"), item("a")});
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(DesktopNotificationsPollTest, ShowsEachNewItemOnceTheOldestFirst) {
  startWithBaseline({item("a")});
  nextTick();
  completePoll({item("c"), item("b"), item("a")});
  EXPECT_THAT(shown(), ElementsAre("navora-b", "navora-c"));
  EXPECT_EQ(center.added[0].url, "https://navora.example/#circles?room=r1");
  EXPECT_EQ(center.added[0].body, "Text of b");
  nextTick();
  completePoll({item("c"), item("b"), item("a")});
  EXPECT_EQ(center.added.size(), 2u);
}

TEST_F(DesktopNotificationsPollTest, AddsTheNextItemAfterTheDesktopHasAnswered) {
  startWithBaseline();
  nextTick();
  answerPoll({item("b"), item("a")});
  center.answerStatus();
  EXPECT_THAT(shown(), ElementsAre("navora-a"));
  center.finishAdd();
  EXPECT_THAT(shown(), ElementsAre("navora-a", "navora-b"));
}

TEST_F(DesktopNotificationsPollTest, RetriesAnItemThatTheDesktopRejected) {
  startWithBaseline();
  nextTick();
  answerPoll({item("b"), item("a")});
  center.answerStatus();
  center.finishAdd(PlatformError{"desktop", 1, "No daemon"});
  center.finishAdd();
  nextTick();
  completePoll({item("b"), item("a")});
  EXPECT_THAT(shown(), ElementsAre("navora-a", "navora-b", "navora-a"));
}

TEST_F(DesktopNotificationsPollTest, DoesNotWaitForADesktopThatDoesNotAnswerAgainInThePoll) {
  startWithBaseline();
  for (const int code : {PlatformError::timedOutCode, PlatformError::unavailableCode}) {
    SCOPED_TRACE(code);
    center.added.clear();
    nextTick();
    const std::string suffix = std::to_string(code);
    answerPoll({item("q" + suffix, "quiet"), item("b" + suffix), item("a" + suffix)});
    center.answerStatus();
    center.finishAdd(PlatformError{"desktop", code, "No reply"});
    EXPECT_EQ(center.addsUnderWay(), 0u);
    // The next poll offers both again, and not the one that it has recorded as ignored.
    nextTick();
    completePoll({item("q" + suffix), item("b" + suffix), item("a" + suffix)});
    EXPECT_THAT(shown(),
                ElementsAre("navora-a" + suffix, "navora-a" + suffix, "navora-b" + suffix));
  }
}

TEST_F(DesktopNotificationsPollTest, NeverShowsItemsFromQuietHours) {
  // The fake clock is at 22:13:20 UTC.
  startWithBaseline();
  nextTick();
  answerUser();
  answerSettings("22:00-07:00");
  answerList({item("a")});
  platform.backgroundQueue().finishAll();
  center.answerStatus();
  nextTick();
  completePoll({item("a")});
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(DesktopNotificationsPollTest, NeverShowsUnwantedItemsOrThoseWithoutADestination) {
  startWithBaseline();
  Json elsewhere = item("c");
  elsewhere["data"]["url"] = "https://remote.example/";
  nextTick();
  completePoll({elsewhere, item("b", "quiet"), item("a", "unknown")});
  elsewhere["data"].erase("url");
  nextTick();
  completePoll({elsewhere, item("b"), item("a")});
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(DesktopNotificationsPollTest, LeavesItemsUnseenUntilPermissionIsGranted) {
  for (const auto status : {AuthorizationStatus::notDetermined, AuthorizationStatus::denied,
                            AuthorizationStatus::provisional}) {
    center.status = status;
    if (platform.network().requests.empty()) startWithBaseline();
    nextTick();
    completePoll({item("a")});
  }
  EXPECT_THAT(shown(), IsEmpty());
  center.status = AuthorizationStatus::authorized;
  nextTick();
  completePoll({item("a")});
  EXPECT_THAT(shown(), ElementsAre("navora-a"));
}

TEST_F(DesktopNotificationsPollTest, SkipsItemsWithoutATextId) {
  startWithBaseline();
  Json numbered = item("a");
  numbered["id"] = 7;
  for (int poll = 0; poll < 2; ++poll) {
    nextTick();
    completePoll({numbered});
  }
  EXPECT_THAT(shown(), IsEmpty());
  numbered["id"] = "7";
  nextTick();
  completePoll({numbered});
  EXPECT_THAT(shown(), ElementsAre("navora-7"));
}

TEST_F(DesktopNotificationsPollTest, TakesANewBaselineForAnotherUser) {
  startWithBaseline({item("a")});
  nextTick();
  completePoll({item("x")}, "u2");
  EXPECT_THAT(shown(), IsEmpty());
  nextTick();
  completePoll({item("y"), item("x")}, "u2");
  EXPECT_THAT(shown(), ElementsAre("navora-y"));
}

TEST_F(DesktopNotificationsPollTest, ForgetsTheAccountAfterA401FromAnyRequest) {
  startWithBaseline();
  for (int step = 0; step < 3; ++step) {
    nextTick();
    if (step == 0) {
      webView->answerCookies();
    } else {
      answerUser();
    }
    if (step == 2) answerSettings();
    platform.network().answer(401, R"({"error": {}})");
    nextTick();
    completePoll({item("a" + std::to_string(step))});
    EXPECT_THAT(shown(), IsEmpty()) << step;
  }
}

TEST_F(DesktopNotificationsPollTest, KeepsTheLedgerAfterEveryOtherFailure) {
  startWithBaseline({item("a")});
  const std::vector<std::function<void()>> failures{
      [&] { platform.network().fail(PlatformError::timedOutCode); },
      [&] { platform.network().answer(500, "{}"); },
      [&] { platform.network().answer(204, ""); },
      [&] { platform.network().answer(302, ""); },
      [&] { platform.network().answer(200, "<!doctype html><title>Sign in</title>"); },
      [&] { platform.network().answer(200, "[]"); },
      [&] { platform.network().answer(200, "{}"); },
      [&] { platform.network().answer(200, R"({"user": {"id": 7}})"); },
      [&] { platform.network().answer(200, R"({"user": {"id": "u1"})"); },
      [&] {
        platform.network().finish(HttpResponse{200, testUrl("https://remote.example/api/auth/me"),
                                               R"({"user": {"id": "u2"}})"});
      },
      [&] { platform.network().finish(HttpResponse{200, std::nullopt, "{}"}); },
      [&] { platform.network().finish(HttpResponse{200, origin, "", true}); }};
  for (const auto& fail : failures) {
    nextTick();
    webView->answerCookies();
    fail();
    EXPECT_EQ(platform.network().underWay(), 0u);
  }
  nextTick();
  completePoll({item("b"), item("a")});
  EXPECT_THAT(shown(), ElementsAre("navora-b"));
}

TEST_F(DesktopNotificationsPollTest, AcceptsABodyOfExactlyTheLimit) {
  startWithBaseline();
  const std::string answer = R"({"user": {"id": "u1"}})";
  for (const std::size_t more : {0u, 1u}) {
    nextTick();
    webView->answerCookies();
    platform.network().answer(200, answer + std::string(1024 * 1024 - answer.size() + more, ' '));
    EXPECT_EQ(platform.network().underWay(), more == 0 ? 1u : 0u);
    if (more == 0) platform.network().fail(1);
  }
}

TEST_F(DesktopNotificationsPollTest, EndsThePollAtInvalidSettingsOrLists) {
  startWithBaseline();
  nextTick();
  answerUser();
  platform.network().answer(200, R"({"settings": {}, "timeZone": "UTC"})");
  EXPECT_EQ(platform.network().underWay(), 0u);
  for (const char* list : {R"({"notifications": [7], "kinds": []})", "[]", "", "{"}) {
    nextTick();
    answerUser();
    answerSettings();
    platform.network().answer(200, list);
    platform.backgroundQueue().finishAll();
    EXPECT_EQ(center.statusQuestions(), 0u) << list;
  }
  // None of these lists became the baseline or changed it.
  nextTick();
  completePoll({item("a")});
  EXPECT_THAT(shown(), ElementsAre("navora-a"));
}

TEST_F(DesktopNotificationsPollTest, ReadsTheListInTheBackground) {
  startWithBaseline();
  nextTick();
  sendList({item("a")});
  FakeBackgroundQueue& background = platform.backgroundQueue();
  EXPECT_EQ(background.waiting(), 1u);
  background.workOnNext();
  EXPECT_EQ(center.statusQuestions(), 0u);
  background.completeNext();
  center.answerStatus();
  EXPECT_THAT(shown(), ElementsAre("navora-a"));
}

TEST_F(DesktopNotificationsPollTest, DoesNotReadARefusedList) {
  startWithBaseline();
  nextTick();
  answerUser();
  answerSettings();
  platform.network().answer(401, R"({"notifications": [], "kinds": []})");
  EXPECT_EQ(platform.backgroundQueue().waiting(), 0u);
}

TEST_F(DesktopNotificationsPollTest, SkipsATickWhileTheListIsRead) {
  startWithBaseline();
  nextTick();
  sendList({item("a")});
  nextTick();
  notifications->refresh();
  EXPECT_EQ(webView->cookieQuestions(), 0u);
}

TEST_F(DesktopNotificationsPollTest, EvaluatesQuietHoursAtTheListsArrival) {
  // The fake clock is at 22:13:20 UTC.
  startWithBaseline();
  nextTick();
  sendList({item("a")}, "22:00-22:14");
  platform.system().time = platform.system().time + std::chrono::minutes(1);
  platform.backgroundQueue().finishAll();
  center.answerStatus();
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(DesktopNotificationsPollTest, ShowsNothingOfAListReadAcrossAStop) {
  startWithBaseline();
  for (const bool worked : {false, true}) {
    nextTick();
    sendList({item("a")});
    if (worked) platform.backgroundQueue().workOnNext();
    notifications->stop();
    platform.backgroundQueue().finishAll();
    EXPECT_EQ(center.statusQuestions(), 0u);
    notifications->start();
    // The cancelled list has changed nothing.
    answerUser();
    platform.network().fail(1);
  }
  nextTick();
  completePoll({item("a")});
  EXPECT_THAT(shown(), ElementsAre("navora-a"));
}

TEST_F(DesktopNotificationsPollTest, ShowsNothingOfAListToAnotherAccount) {
  startWithBaseline();
  nextTick();
  sendList({item("a")});
  notifications->stop();
  notifications->start();
  answerUser("u2");
  answerSettings();
  platform.network().answer(200, R"({"notifications": [], "kinds": []})");
  EXPECT_EQ(platform.backgroundQueue().waiting(), 2u);
  platform.backgroundQueue().finishAll();
  EXPECT_EQ(center.statusQuestions(), 0u);
  nextTick();
  completePoll({item("b")}, "u2");
  EXPECT_THAT(shown(), ElementsAre("navora-b"));
}

TEST_F(DesktopNotificationsPollTest, MayBeDestroyedWhileTheListIsRead) {
  startWithBaseline();
  nextTick();
  sendList({item("a")});
  platform.backgroundQueue().workOnNext();
  notifications.reset();
  platform.backgroundQueue().finishAll();
  EXPECT_EQ(center.statusQuestions(), 0u);
}

TEST_F(DesktopNotificationsPollTest, WritesItsStepsToTheDebugLog) {
  auto& lines = platform.system().debugged;
  const auto isNotARequest = [](const std::string& line) {
    return line.find("GET ") == std::string::npos && line.find("cookie") == std::string::npos;
  };
  startWithBaseline({item("a")});
  nextTick();
  answerPoll({item("b"), item("a")});
  center.answerStatus();
  center.finishAdd(PlatformError{"Desktop", 1, "Full"});
  center.status = AuthorizationStatus::denied;
  nextTick();
  completePoll({item("b"), item("a")});
  std::vector<std::string> steps;
  std::ranges::copy_if(lines, std::back_inserter(steps), isNotARequest);
  EXPECT_THAT(
      steps,
      ElementsAre("notifications: Marked the account's first list as seen; number of items: 1",
                  "notifications: Showing item b",
                  "notifications: The desktop rejected item b: Full",
                  "notifications: The desktop has not granted permission"));
  EXPECT_THAT(lines, Contains("notifications: GET https://navora.example/api/settings: status "
                              "200"));
}

TEST_F(DesktopNotificationsPollTest, PollsAtOnceAndEveryMinute) {
  notifications->start();
  EXPECT_EQ(webView->cookieQuestions(), 1u);
  completePoll({});
  platform.mainQueue().advance(std::chrono::milliseconds(59'999));
  EXPECT_EQ(webView->cookieQuestions(), 0u);
  platform.mainQueue().advance(std::chrono::milliseconds(1));
  EXPECT_EQ(webView->cookieQuestions(), 1u);
}

TEST_F(DesktopNotificationsPollTest, SkipsATickDuringAPoll) {
  notifications->start();
  webView->answerCookies();
  nextTick();
  notifications->refresh();
  EXPECT_EQ(webView->cookieQuestions(), 0u);
  platform.network().fail(-1);
  nextTick();
  EXPECT_EQ(webView->cookieQuestions(), 1u);
}

TEST_F(DesktopNotificationsPollTest, EndsAPollForWhichTheEngineReturnsNoCookies) {
  startWithBaseline();
  nextTick();
  platform.mainQueue().advance(std::chrono::seconds(2));
  EXPECT_EQ(platform.network().underWay(), 0u);
  // The account is not forgotten: its next list is no history.
  platform.mainQueue().advance(std::chrono::seconds(58));
  webView->answerCookies();
  completePoll({item("a")});
  EXPECT_THAT(shown(), ElementsAre("navora-a"));
}

TEST_F(DesktopNotificationsPollTest, StartsOnce) {
  notifications->start();
  notifications->start();
  completePoll({});
  EXPECT_EQ(platform.mainQueue().pendingCount(), 1u);
}

TEST_F(DesktopNotificationsPollTest, DoesNotStartWhenDisabled) {
  platform.userDefaults().setValue(DesktopNotifications::enabledKey, false);
  notifications->start();
  notifications->refresh();
  EXPECT_EQ(webView->cookieQuestions(), 0u);
  EXPECT_EQ(platform.mainQueue().pendingCount(), 0u);
}

TEST_F(DesktopNotificationsPollTest, StartsIfTheDefaultIsNotABoolean) {
  for (const Json& value : {Json("false"), Json(0), Json(nullptr), Json(true)}) {
    platform.userDefaults().setValue(DesktopNotifications::enabledKey, value);
    notifications->start();
    EXPECT_EQ(webView->cookieQuestions(), 1u) << value;
    webView->answerCookies();
    notifications->stop();
  }
}

TEST_F(DesktopNotificationsPollTest, CancelsTheRequestUnderWayWhenItStops) {
  notifications->start();
  webView->answerCookies();
  ASSERT_EQ(platform.network().underWay(), 1U);
  notifications->stop();
  EXPECT_EQ(platform.network().underWay(), 0U);
  notifications->start();
  webView->answerCookies();
  EXPECT_EQ(platform.network().underWay(), 1U);
}

TEST_F(DesktopNotificationsPollTest, ShowsNothingAfterAStopAtAnyStep) {
  for (int steps = 0; steps <= 7; ++steps) {
    startWithBaseline();
    nextTick();
    if (steps > 0) webView->answerCookies();
    if (steps > 1) platform.network().answer(200, R"({"user": {"id": "u1"}})");
    if (steps > 2) answerSettings();
    if (steps > 3) answerList({item("b" + std::to_string(steps)), item("a")});
    if (steps > 4) platform.backgroundQueue().workOnNext();
    if (steps > 5) platform.backgroundQueue().completeNext();
    if (steps > 6) center.answerStatus();
    const std::size_t before = center.added.size();
    notifications->stop();
    while (webView->cookieQuestions() > 0)
      webView->answerCookies();
    EXPECT_EQ(platform.network().underWay(), 0U) << steps;
    platform.backgroundQueue().finishAll();
    while (center.statusQuestions() > 0)
      center.answerStatus();
    while (center.addsUnderWay() > 0)
      center.finishAdd();
    EXPECT_EQ(center.added.size(), before) << steps;
    EXPECT_EQ(platform.mainQueue().pendingCount(), 0u);
  }
}

TEST_F(DesktopNotificationsPollTest, DoesNothingAfterTheWebViewIsDestroyed) {
  notifications->start();
  completePoll({});
  webView.reset();
  nextTick();
  notifications->refresh();
  EXPECT_EQ(platform.network().requests.size(), 3u);
}

TEST_F(DesktopNotificationsPollTest, PollsForADayWithoutGrowing) {
  startWithBaseline({item("a")});
  for (int minute = 0; minute < 24 * 60; ++minute) {
    nextTick();
    completePoll({item("a")});
    ASSERT_EQ(platform.mainQueue().pendingCount(), 1u);
    ASSERT_EQ(platform.network().underWay() + center.statusQuestions() + center.addsUnderWay(), 0u);
  }
  EXPECT_THAT(shown(), IsEmpty());
}

// In any sequence of events: no item is shown twice to the same account by the same ledger, no item
// of a baseline is shown, and no item that stays on the list is lost.
TEST_F(DesktopNotificationsPollTest, KeepsTheLedgersInvariantsInRandomSequences) {
  std::mt19937 random(7);
  std::map<std::string, std::vector<Json>> lists;
  std::set<std::string> past;
  std::set<std::string> shownToAccount;
  std::string ledgerOf;
  std::string user = "u1";
  int lastId = 0;
  std::size_t checked = 0;
  constexpr std::size_t longestList = 20;
  notifications->start();
  for (int step = 0; step < 2000; ++step) {
    if (random() % 10 == 0) user = user == "u1" ? "u2" : "u1";
    if (random() % 3 == 0) {
      lists[user].insert(lists[user].begin(), item(user + std::to_string(++lastId)));
      if (lists[user].size() > longestList) lists[user].pop_back();
    }
    center.status =
        random() % 4 == 0 ? AuthorizationStatus::denied : AuthorizationStatus::authorized;
    const unsigned fate = random() % 8;
    if (fate == 0) {
      webView->answerCookies();
      platform.network().fail(1);
    } else if (fate == 1) {
      webView->answerCookies();
      platform.network().answer(401, "{}");
      ledgerOf.clear();
    } else {
      const bool baseline = ledgerOf != user;
      if (baseline) {
        ledgerOf = user;
        past.clear();
        shownToAccount.clear();
        for (const Json& each : lists[user])
          past.insert("navora-" + each["id"].get<std::string>());
      }
      answerPoll(lists[user], user);
      bool failed = false;
      if (!baseline) {
        center.answerStatus();
        while (center.addsUnderWay() > 0) {
          const std::string identifier = center.added.back().identifier;
          ASSERT_FALSE(past.contains(identifier)) << identifier;
          ASSERT_FALSE(shownToAccount.contains(identifier)) << identifier;
          ASSERT_TRUE(identifier.starts_with("navora-" + user));
          if (random() % 4 == 0) {
            failed = true;
            center.finishAdd(PlatformError{"desktop", 1, ""});
          } else {
            shownToAccount.insert(identifier);
            center.finishAdd();
          }
        }
        if (!failed && center.status == AuthorizationStatus::authorized) {
          for (const Json& each : lists[user]) {
            const std::string identifier = "navora-" + each["id"].get<std::string>();
            ASSERT_TRUE(past.contains(identifier) || shownToAccount.contains(identifier));
            ++checked;
          }
        }
      }
    }
    nextTick();
  }
  EXPECT_GT(checked, 1000u);
}

}  // namespace
}  // namespace navora
