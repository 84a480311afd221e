#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "support/TaskGroup.h"

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
  EXPECT_EQ(group.runningCount(), 2U);
  callbacks[0]();
  EXPECT_EQ(group.runningCount(), 1U);
  group.add(waitFor(callbacks, finished));
  EXPECT_EQ(group.runningCount(), 2U);
  callbacks[1]();
  callbacks[2]();
  EXPECT_EQ(finished, 3);
}

TEST(TaskGroup, EndsItsTasksWithItself) {
  std::vector<Callback<void>> callbacks;
  int finished = 0;
  auto group = std::make_unique<TaskGroup>();
  group->add(waitFor(callbacks, finished));
  group.reset();
  callbacks[0]();
  EXPECT_EQ(finished, 0);
}

TEST(TaskGroup, LetsATaskAddAnother) {
  std::vector<Callback<void>> callbacks;
  int finished = 0;
  TaskGroup group;
  const auto adding = [](TaskGroup& to, std::vector<Callback<void>>& doors, int& count) -> Task<> {
    co_await awaitCallback<void>([&](Callback<void> done) { doors.push_back(std::move(done)); });
    to.add(waitFor(doors, count));
    ++count;
  };
  group.add(adding(group, callbacks, finished));
  const Callback<void> first = callbacks[0];
  first();
  EXPECT_EQ(finished, 1);
  EXPECT_EQ(group.runningCount(), 1U);
}

}  // namespace
}  // namespace navora
