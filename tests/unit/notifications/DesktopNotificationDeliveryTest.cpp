#include <algorithm>
#include <deque>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "notifications/DesktopNotificationDelivery.h"

namespace navora {
namespace {

using Result = DesktopNotificationDelivery::Result;

const PlatformError failure{"desktop", 1, "No daemon"};

// A desktop whose enqueue operations complete when the test decides.
struct Desktop {
  std::vector<std::string> enqueued;
  std::deque<Callback<Result>> underWay;

  DesktopNotificationDelivery::Enqueue enqueue(const std::string& id) {
    return [this, id](Callback<Result> done) {
      enqueued.push_back(id);
      underWay.push_back(std::move(done));
    };
  }
  void finish(Result result = std::nullopt) {
    auto done = std::move(underWay.front());
    underWay.pop_front();
    done(std::move(result));
  }
};

class DesktopNotificationDeliveryTest : public testing::Test {
 protected:
  Task<Result> deliver(const std::string& id) { return ledger.deliver(id, desktop.enqueue(id)); }

  Desktop desktop;
  DesktopNotificationDelivery ledger;
};

TEST_F(DesktopNotificationDeliveryTest, AcceptsOneBaseline) {
  EXPECT_TRUE(ledger.baseline({"a"}));
  EXPECT_FALSE(ledger.baseline({"b"}));
  const auto old = deliver("a");
  EXPECT_TRUE(old.isFinished());
  EXPECT_TRUE(desktop.enqueued.empty());
  const auto fresh = deliver("b");
  EXPECT_EQ(desktop.enqueued, std::vector<std::string>{"b"});
}

TEST_F(DesktopNotificationDeliveryTest, NeverEnqueuesAnIgnoredId) {
  ledger.ignore("a");
  EXPECT_TRUE(deliver("a").isFinished());
  EXPECT_TRUE(desktop.enqueued.empty());
}

TEST_F(DesktopNotificationDeliveryTest, EnqueuesAnIdOnce) {
  const auto first = deliver("a");
  EXPECT_TRUE(first.isRunning());
  desktop.finish();
  EXPECT_EQ(first.result(), std::nullopt);
  EXPECT_EQ(deliver("a").result(), std::nullopt);
  EXPECT_EQ(desktop.enqueued.size(), 1u);
}

TEST_F(DesktopNotificationDeliveryTest, EnqueuesOnceForTwoConcurrentDeliveries) {
  const auto first = deliver("a");
  const auto second = deliver("a");
  EXPECT_TRUE(second.isFinished());
  EXPECT_EQ(desktop.enqueued.size(), 1u);
  desktop.finish();
  EXPECT_TRUE(first.isFinished());
}

TEST_F(DesktopNotificationDeliveryTest, RetriesAfterAFailure) {
  const auto first = deliver("a");
  desktop.finish(failure);
  EXPECT_EQ(first.result(), failure);
  const auto second = deliver("a");
  EXPECT_EQ(desktop.enqueued.size(), 2u);
  desktop.finish();
  EXPECT_EQ(second.result(), std::nullopt);
  EXPECT_TRUE(deliver("a").isFinished());
}

TEST_F(DesktopNotificationDeliveryTest, RecordsTheResultAfterTheTaskIsDestroyed) {
  {
    const auto abandoned = deliver("a");
  }
  EXPECT_TRUE(deliver("a").isFinished());
  EXPECT_EQ(desktop.enqueued.size(), 1u);
  desktop.finish(failure);
  const auto again = deliver("a");
  EXPECT_EQ(desktop.enqueued.size(), 2u);
}

TEST_F(DesktopNotificationDeliveryTest, MayBeDestroyedBeforeTheDesktopAnswers) {
  auto other = std::make_unique<DesktopNotificationDelivery>();
  auto task = other->deliver("a", desktop.enqueue("a"));
  other.reset();
  desktop.finish();
  EXPECT_TRUE(task.isFinished());
}

// In any sequence of operations, no id is enqueued that is seen or pending.
TEST_F(DesktopNotificationDeliveryTest, KeepsItsInvariantsInRandomSequences) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    std::mt19937 random(seed);
    Desktop screen;
    DesktopNotificationDelivery records;
    std::set<std::string> finished;
    std::deque<std::string> running;
    std::vector<Task<Result>> tasks;
    bool baselined = false;
    for (int step = 0; step < 300; ++step) {
      const std::string id(1, static_cast<char>('a' + random() % 8));
      const std::size_t before = screen.enqueued.size();
      switch (random() % 6) {
        case 0:
          ASSERT_EQ(records.baseline({id}), !baselined);
          if (!baselined) finished.insert(id);
          baselined = true;
          break;
        case 1:
          records.ignore(id);
          finished.insert(id);
          break;
        case 2:
          if (running.empty()) break;
          if (random() % 2 == 0) {
            finished.insert(running.front());
            screen.finish();
          } else {
            screen.finish(failure);
          }
          running.pop_front();
          break;
        case 3:
          if (!tasks.empty()) tasks.erase(tasks.begin());
          break;
        default: {
          const bool due = !finished.contains(id) && std::ranges::count(running, id) == 0;
          tasks.push_back(records.deliver(id, screen.enqueue(id)));
          ASSERT_EQ(screen.enqueued.size(), before + (due ? 1 : 0)) << "seed " << seed;
          if (due) running.push_back(id);
          continue;
        }
      }
      ASSERT_EQ(screen.enqueued.size(), before);
    }
  }
}

}  // namespace
}  // namespace navora
