#include <chrono>
#include <limits>

#include <gtest/gtest.h>

#include "platform/MemoryUserDefaults.h"
#include "updates/UpdateReminderPolicy.h"

namespace navora {
namespace {

using namespace std::chrono_literals;
using Pending = UpdateReminderPolicy::Pending;
using Delay = UpdateReminderPolicy::Delay;

constexpr const char* pendingKey = "navora.updateReminder.pending";
constexpr const char* ignoredKey = "navora.updateReminder.ignoredVersion";

class UpdateReminderPolicyTest : public testing::Test {
 protected:
  void setTime(double seconds) { now = dateFromSecondsSince1970(seconds); }
  void store(const Json& record) { defaults.setValue(pendingKey, record); }
  bool offers(const char* version) const { return policy.shouldOffer(version, false); }

  MemoryUserDefaults defaults;
  Date now = dateFromSecondsSince1970(1800000000);
  std::string zone = "UTC";
  UpdateReminderPolicy policy{defaults, [this] { return now; }, [this] { return Calendar(zone); }};
};

TEST_F(UpdateReminderPolicyTest, ReadsItsClockAtEveryUse) {
  EXPECT_EQ(policy.now(), now);
  now += 1s;
  EXPECT_EQ(policy.now(), now);
}

TEST_F(UpdateReminderPolicyTest, OffersAVersionWithoutAnAnswer) {
  EXPECT_TRUE(offers("2.0"));
  EXPECT_EQ(policy.pending(), std::nullopt);
}

TEST_F(UpdateReminderPolicyTest, PostponesByExactlyAnHour) {
  zone = "Nowhere/At_All";
  policy.postpone("2.0", Delay::hour);
  EXPECT_EQ(policy.pending(), (Pending{"2.0", now + 3600s}));
  EXPECT_EQ(*defaults.value(pendingKey), (Json{{"version", "2.0"}, {"deadline", 1800003600.0}}));
}

TEST_F(UpdateReminderPolicyTest, OffersAgainFromTheDeadline) {
  policy.postpone("2.0", Delay::hour);
  now += 3599s;
  EXPECT_FALSE(offers("2.0"));
  now += 1s;
  EXPECT_TRUE(offers("2.0"));
  now += 1h;
  EXPECT_TRUE(offers("2.0"));
}

TEST_F(UpdateReminderPolicyTest, OffersEveryOtherVersion) {
  policy.postpone("2.0", Delay::hour);
  EXPECT_TRUE(offers("2.1"));
  EXPECT_TRUE(offers("2.0.0"));
}

TEST_F(UpdateReminderPolicyTest, PostponesUntilTheNextLocalMidnight) {
  zone = "Asia/Tokyo";  // nine hours ahead, without summer time
  setTime(1768489199);  // 2026-01-15 23:59:59 there
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending()->deadline, now + 1s);
  setTime(1768489200);
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending()->deadline, now + 24h);
}

TEST_F(UpdateReminderPolicyTest, FollowsTheCalendarOnDaysOfClockChanges) {
  zone = "Europe/Berlin";
  setTime(1774738800);  // 2026-03-29 00:00 there, a day of 23 hours
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending()->deadline, now + 23h);
  setTime(1792879200);  // 2026-10-25 00:00 there, a day of 25 hours
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending()->deadline, now + 25h);
}

TEST_F(UpdateReminderPolicyTest, HandlesClockChangesAtMidnight) {
  zone = "America/Santiago";
  setTime(1788624000);  // 2026-09-05 12:00 there; the next day begins at one
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending()->deadline, now + 12h);
  setTime(1775314800);  // 2026-04-04 12:00 there; the hour before midnight comes twice
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending()->deadline, now + 13h);
}

TEST_F(UpdateReminderPolicyTest, StoresNothingIfThereIsNoNextDay) {
  zone = "Nowhere/At_All";
  policy.ignore("2.0");
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending(), std::nullopt);
  EXPECT_EQ(defaults.value(ignoredKey), Json("2.0"));
}

TEST_F(UpdateReminderPolicyTest, KeepsOnePostponement) {
  policy.postpone("2.0", Delay::hour);
  now += 60s;
  policy.postpone("2.0", Delay::hour);
  EXPECT_EQ(policy.pending(), (Pending{"2.0", now + 3600s}));
  policy.postpone("2.1", Delay::hour);
  EXPECT_EQ(policy.pending()->version, "2.1");
  EXPECT_TRUE(offers("2.0"));
}

TEST_F(UpdateReminderPolicyTest, IgnoresOneVersionOnly) {
  policy.ignore("2.0");
  EXPECT_FALSE(offers("2.0"));
  EXPECT_TRUE(offers("2.1"));
  policy.ignore("2.1");
  EXPECT_FALSE(offers("2.1"));
  EXPECT_TRUE(offers("2.0"));
}

TEST_F(UpdateReminderPolicyTest, RemovesThePostponementOfAnIgnoredVersion) {
  policy.postpone("2.0", Delay::hour);
  policy.ignore("2.0");
  EXPECT_EQ(policy.pending(), std::nullopt);
  policy.postpone("2.1", Delay::hour);
  policy.ignore("2.0");
  EXPECT_EQ(policy.pending()->version, "2.1");
}

TEST_F(UpdateReminderPolicyTest, StopsIgnoringAPostponedVersion) {
  policy.ignore("2.0");
  policy.postpone("2.0", Delay::hour);
  EXPECT_EQ(defaults.value(ignoredKey), std::nullopt);
  EXPECT_FALSE(offers("2.0"));
  now += 1h;
  EXPECT_TRUE(offers("2.0"));
}

TEST_F(UpdateReminderPolicyTest, KeepsIgnoringAnotherVersion) {
  policy.ignore("2.0");
  policy.postpone("2.1", Delay::hour);
  EXPECT_FALSE(offers("2.0"));
}

TEST_F(UpdateReminderPolicyTest, OffersEverythingInTheUsersOwnCheck) {
  policy.ignore("2.0");
  EXPECT_TRUE(policy.shouldOffer("2.0", true));
  EXPECT_EQ(defaults.value(ignoredKey), Json("2.0"));
  policy.postpone("2.1", Delay::hour);
  EXPECT_TRUE(policy.shouldOffer("2.1", true));
  EXPECT_EQ(policy.pending()->version, "2.1");
}

TEST_F(UpdateReminderPolicyTest, TreatsAMalformedRecordAsAbsent) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const Json& record :
       {Json("2.0"), Json(7), Json(nullptr), Json::array(), Json::object(),
        Json{{"version", "2.0"}}, Json{{"deadline", 1.9e9}},
        Json{{"version", "2.0"}, {"deadline", "1900000000"}},
        Json{{"version", "2.0"}, {"deadline", true}},
        Json{{"version", "2.0"}, {"deadline", nullptr}}, Json{{"version", 2}, {"deadline", 1.9e9}},
        Json{{"version", "2.0"}, {"deadline", infinite}},
        Json{{"version", "2.0"}, {"deadline", -infinite}},
        Json{{"version", "2.0"}, {"deadline", std::numeric_limits<double>::quiet_NaN()}}}) {
    store(record);
    EXPECT_EQ(policy.pending(), std::nullopt) << record;
    EXPECT_TRUE(offers("2.0")) << record;
    policy.clearPending("2.0");
    policy.observeEligibleVersion("2.1");
    EXPECT_TRUE(defaults.value(pendingKey)) << record;
  }
}

TEST_F(UpdateReminderPolicyTest, AcceptsAnIntegerAsADeadline) {
  store({{"version", "2.0"}, {"deadline", 1900000000}});
  EXPECT_EQ(policy.pending(), (Pending{"2.0", dateFromSecondsSince1970(1900000000)}));
}

TEST_F(UpdateReminderPolicyTest, IgnoresNoVersionIfTheStoredValueIsNotText) {
  for (const Json& mark : {Json(2), Json(nullptr), Json::array({"2.0"})}) {
    defaults.setValue(ignoredKey, mark);
    EXPECT_TRUE(offers("2.0")) << mark;
  }
}

TEST_F(UpdateReminderPolicyTest, RemovesAPostponementWhenAnotherVersionIsEligible) {
  policy.postpone("2.0", Delay::hour);
  policy.observeEligibleVersion("2.0");
  EXPECT_TRUE(policy.pending());
  policy.observeEligibleVersion("2.1");
  EXPECT_FALSE(policy.pending());
}

TEST_F(UpdateReminderPolicyTest, ClearsThePostponementOfTheGivenVersionOnly) {
  policy.postpone("2.0", Delay::hour);
  policy.clearPending("2.1");
  EXPECT_TRUE(policy.pending());
  policy.clearPending("2.0");
  EXPECT_FALSE(policy.pending());
}

TEST_F(UpdateReminderPolicyTest, RemovesBothRecordsWhenTheVersionIsInstalled) {
  policy.postpone("2.0", Delay::hour);
  defaults.setValue(ignoredKey, "2.0");
  policy.beginInstallation("2.0");
  EXPECT_EQ(defaults.value(pendingKey), std::nullopt);
  EXPECT_EQ(defaults.value(ignoredKey), std::nullopt);
}

TEST_F(UpdateReminderPolicyTest, KeepsTheRecordsOfOtherVersionsWhenOneIsInstalled) {
  policy.postpone("2.1", Delay::hour);
  policy.ignore("1.9");
  policy.beginInstallation("2.0");
  EXPECT_EQ(policy.pending()->version, "2.1");
  EXPECT_FALSE(offers("1.9"));
}

TEST_F(UpdateReminderPolicyTest, ConsumesADueReminder) {
  policy.postpone("2.0", Delay::hour);
  const Pending reminder = *policy.pending();
  now += 3599s;
  policy.consume(reminder);
  EXPECT_TRUE(policy.pending());
  now += 1s;
  policy.consume(reminder);
  EXPECT_FALSE(policy.pending());
  policy.consume(reminder);
  EXPECT_FALSE(policy.pending());
}

TEST_F(UpdateReminderPolicyTest, TreatsADeadlineBeyondAnyPostponementAsReached) {
  // The clock was set back, or the stored number is damaged.
  for (const double seconds : {secondsSince1970(now + 26h) + 1, 1e18, 1e300}) {
    store({{"version", "2.0"}, {"deadline", seconds}});
    EXPECT_TRUE(policy.isDue(*policy.pending())) << seconds;
    EXPECT_TRUE(offers("2.0")) << seconds;
    policy.consume(*policy.pending());
    EXPECT_FALSE(policy.pending()) << seconds;
  }
}

TEST_F(UpdateReminderPolicyTest, KeepsTheLongestPostponement) {
  zone = "Europe/Berlin";
  // Midnight of the day on which summer time ends.
  now = dateFromSecondsSince1970(1792879200);
  policy.postpone("2.0", Delay::tomorrow);
  EXPECT_EQ(policy.pending()->deadline, now + 25h);
  EXPECT_FALSE(policy.isDue(*policy.pending()));
  EXPECT_FALSE(offers("2.0"));
  // A small correction of the clock changes nothing.
  now -= 10min;
  EXPECT_FALSE(offers("2.0"));
}

TEST_F(UpdateReminderPolicyTest, KeepsAReminderThatDiffersInAnyWay) {
  policy.postpone("2.0", Delay::hour);
  const Pending stored = *policy.pending();
  now += 2h;
  policy.consume({"2.1", stored.deadline});
  policy.consume({stored.version, stored.deadline + 1us});
  policy.consume({stored.version, stored.deadline - 1us});
  EXPECT_EQ(policy.pending(), stored);
}

TEST_F(UpdateReminderPolicyTest, PersistsAcrossLaunches) {
  now += 123456789us;
  policy.postpone("2.0", Delay::hour);
  const UpdateReminderPolicy next(defaults, [this] { return now; }, [] { return Calendar("UTC"); });
  EXPECT_EQ(next.pending(), policy.pending());
  EXPECT_FALSE(next.shouldOffer("2.0", false));
}

}  // namespace
}  // namespace navora
