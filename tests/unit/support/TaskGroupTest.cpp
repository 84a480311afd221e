#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "support/Task.h"

namespace navora {
namespace {

Task<> waitFor(std::vector<Callback<void>>& callbacks, int& finished) {
  co_await awaitCallback<void>([&](Callback<void> done) { callbacks.push_back(std::move(done)); });
  ++finished;
}

TEST(TaskGroup, KeepsItsTasksRunning) {
  std::vector<Callback<void>> callbacks;
  int finished = 0;
  TaskGroup group;
  group.add(waitFor(callbacks, finished));
  group.add(waitFor(callbacks, finished));
  callbacks[0]();
  EXPECT_EQ(finished, 1);
  group.add(waitFor(callbacks, finished));
  EXPECT_EQ(finished, 1);
  callbacks[1]();
  callbacks[2]();
  EXPECT_EQ(finished, 3);
}

TEST(TaskGroup, DestroysFinishedTasksWhenAnotherIsAdded) {
  std::vector<Callback<void>> callbacks;
  const auto holdUntilCalled = [](std::vector<Callback<void>>& to, std::shared_ptr<int>) -> Task<> {
    co_await awaitCallback<void>([&](Callback<void> done) { to.push_back(std::move(done)); });
  };
  const auto held = std::make_shared<int>();
  TaskGroup group;
  group.add(holdUntilCalled(callbacks, held));
  group.add(holdUntilCalled(callbacks, held));
  EXPECT_EQ(held.use_count(), 3);
  callbacks[0]();
  group.add(holdUntilCalled(callbacks, held));
  EXPECT_EQ(held.use_count(), 3);
}

TEST(TaskGroup, DestroysItsTasksWithItself) {
  std::vector<Callback<void>> callbacks;
  int finished = 0;
  auto group = std::make_unique<TaskGroup>();
  group->add(waitFor(callbacks, finished));
  group.reset();
  callbacks[0]();
  EXPECT_EQ(finished, 0);
}

TEST(TaskGroup, AllowsATaskToAddAnother) {
  std::vector<Callback<void>> callbacks;
  int finished = 0;
  TaskGroup group;
  const auto adding = [](TaskGroup& to, std::vector<Callback<void>>& pending,
                         int& count) -> Task<> {
    co_await awaitCallback<void>([&](Callback<void> done) { pending.push_back(std::move(done)); });
    to.add(waitFor(pending, count));
    ++count;
  };
  group.add(adding(group, callbacks, finished));
  const Callback<void> first = callbacks[0];
  first();
  EXPECT_EQ(finished, 1);
  callbacks[1]();
  EXPECT_EQ(finished, 2);
}

}  // namespace
}  // namespace navora
