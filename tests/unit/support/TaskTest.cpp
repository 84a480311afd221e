#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/Task.h"

namespace navora {
namespace {

// A door that answers when the test says so.
template <class Value>
class Door {
 public:
  CallbackAwaiter<Value> answer() {
    return awaitCallback<Value>([this](Callback<Value> done) {
      ++calls;
      callback = std::move(done);
    });
  }

  Callback<Value> callback;
  int calls = 0;
};

// Counts how many of its kind are alive: one in a coroutine tells whether the frame still exists.
class Witness {
 public:
  explicit Witness(int& alive) : alive_(&alive) { ++*alive_; }
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() { --*alive_; }

 private:
  int* alive_;
};

Task<int> doubled(Door<int>& door, int& alive) {
  const Witness witness(alive);
  const int value = co_await door.answer();
  co_return value * 2;
}

Task<> record(std::vector<std::string>& log, Door<void>& door, std::string name) {
  log.push_back(name + " begins");
  co_await door.answer();
  log.push_back(name + " ends");
}

TEST(Task, RunsAtOnceUntilItFirstWaits) {
  std::vector<std::string> log;
  Door<void> door;
  const Task<> task = record(log, door, "a");
  EXPECT_EQ(log, (std::vector<std::string>{"a begins"}));
  EXPECT_TRUE(task.isRunning());
  EXPECT_FALSE(task.isFinished());
  door.callback();
  EXPECT_EQ(log.back(), "a ends");
  EXPECT_FALSE(task.isRunning());
  EXPECT_TRUE(task.isFinished());
}

TEST(Task, KeepsItsResult) {
  Door<int> door;
  int alive = 0;
  const Task<int> task = doubled(door, alive);
  EXPECT_EQ(alive, 1);
  door.callback(21);
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(task.result(), 42);
}

TEST(Task, GivesAwayAResultThatCannotBeCopied) {
  const auto make = []() -> Task<std::unique_ptr<int>> { co_return std::make_unique<int>(3); };
  const Task<std::unique_ptr<int>> task = make();
  const std::unique_ptr<int> taken = std::move(task.result());
  EXPECT_EQ(*taken, 3);
}

TEST(Task, IsNeitherRunningNorFinishedWithoutACoroutine) {
  const Task<int> task;
  EXPECT_FALSE(task.isRunning());
  EXPECT_FALSE(task.isFinished());
}

TEST(Task, GoesOnWhenTheCallbackComesAtOnce) {
  const auto sum = []() -> Task<int> {
    int total = 0;
    for (int index = 0; index < 100'000; ++index)
      total += co_await awaitCallback<int>([](Callback<int> done) { done(1); });
    co_return total;
  };
  EXPECT_EQ(sum().result(), 100'000);
}

TEST(Task, CountsACallbackOnce) {
  Door<int> first;
  Door<int> second;
  const auto sum = [](Door<int>& one, Door<int>& two) -> Task<int> {
    const int value = co_await one.answer();
    co_return value + co_await two.answer();
  };
  const Task<int> task = sum(first, second);
  first.callback(1);
  first.callback(50);
  EXPECT_TRUE(task.isRunning());
  second.callback(2);
  first.callback(50);
  second.callback(50);
  EXPECT_EQ(task.result(), 3);
}

TEST(Task, CountsTheFirstOfTwoCallbacksThatComeAtOnce) {
  const auto run = []() -> Task<int> {
    co_return co_await awaitCallback<int>([](Callback<int> done) {
      done(1);
      done(2);
    });
  };
  EXPECT_EQ(run().result(), 1);
}

TEST(Task, PassesValuesThatCannotBeCopied) {
  Door<std::unique_ptr<int>> door;
  const auto read = [](Door<std::unique_ptr<int>>& from) -> Task<int> {
    co_return *co_await from.answer();
  };
  const Task<int> task = read(door);
  door.callback(std::make_unique<int>(9));
  EXPECT_EQ(task.result(), 9);
}

TEST(Task, WaitsForeverForADoorThatDropsItsCallback) {
  int alive = 0;
  Door<int> door;
  {
    const Task<int> task = doubled(door, alive);
    door.callback = nullptr;
    EXPECT_TRUE(task.isRunning());
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST(TaskEnd, DestroysTheWaitingFrameAndIgnoresTheLateCallback) {
  int alive = 0;
  Door<int> door;
  {
    const Task<int> task = doubled(door, alive);
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
  door.callback(1);
  door.callback(2);
  EXPECT_EQ(alive, 0);
}

TEST(TaskEnd, ReplacingATaskEndsTheOldCoroutine) {
  std::vector<std::string> log;
  Door<void> first;
  Door<void> second;
  Task<> task = record(log, first, "a");
  task = record(log, second, "b");
  first.callback();
  second.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"a begins", "b begins", "b ends"}));
}

TEST(TaskEnd, MovingATaskDoesNotEndIt) {
  std::vector<std::string> log;
  Door<void> door;
  Task<> task = record(log, door, "a");
  const Task<> moved = std::move(task);
  door.callback();
  EXPECT_EQ(log.back(), "a ends");
  EXPECT_TRUE(moved.isFinished());
}

TEST(TaskEnd, MovingATaskToItselfKeepsIt) {
  std::vector<std::string> log;
  Door<void> door;
  Task<> task = record(log, door, "a");
  Task<>& same = task;
  task = std::move(same);
  door.callback();
  EXPECT_EQ(log.back(), "a ends");
}

TEST(TaskEnd, DestroysWhatTheDoorStillHoldsOnlyOnce) {
  auto shared = std::make_shared<int>(1);
  Door<std::shared_ptr<int>> door;
  const auto read = [](Door<std::shared_ptr<int>>& from) -> Task<> { co_await from.answer(); };
  auto task = std::make_unique<Task<>>(read(door));
  task.reset();
  door.callback(shared);
  door.callback = nullptr;
  EXPECT_EQ(shared.use_count(), 1);
}

// The owner whose work leads to its own end.
struct Owner {
  explicit Owner(std::vector<std::string>& events) : log(&events) {}

  std::vector<std::string>* log;
  Task<> task;
};

struct SelfDestruction : testing::Test {
  std::vector<std::string> log;
  int alive = 0;
  Door<void> first;
  Door<void> second;
  std::unique_ptr<Owner> owner = std::make_unique<Owner>(log);

  static Task<> endingItsOwner(SelfDestruction& test) {
    const Witness witness(test.alive);
    co_await test.first.answer();
    test.owner.reset();
    test.log.push_back("after the end");
    co_await test.second.answer();
    test.log.push_back("never");
  }

  static Task<> endingItsOwnerLast(SelfDestruction& test) {
    const Witness witness(test.alive);
    co_await test.first.answer();
    test.owner.reset();
    test.log.push_back("after the end");
  }

  static Task<> endingItsOwnerWhileStartingAWait(SelfDestruction& test, bool answerAtOnce) {
    const Witness witness(test.alive);
    co_await test.first.answer();
    co_await awaitCallback<void>([&test, answerAtOnce](Callback<void> done) {
      test.owner.reset();
      if (answerAtOnce) done();
      test.second.callback = std::move(done);
    });
    test.log.push_back("never");
  }
};

TEST_F(SelfDestruction, EndsTheCoroutineAtItsNextWaitWithoutBeginningTheWait) {
  owner->task = endingItsOwner(*this);
  first.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"after the end"}));
  EXPECT_EQ(second.calls, 0);
  EXPECT_EQ(alive, 0);
  first.callback();
  EXPECT_EQ(alive, 0);
}

TEST_F(SelfDestruction, EndsTheCoroutineAtItsReturn) {
  owner->task = endingItsOwnerLast(*this);
  first.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"after the end"}));
  EXPECT_EQ(alive, 0);
}

TEST_F(SelfDestruction, EndsTheCoroutineInTheWaitThatItIsJustBeginning) {
  owner->task = endingItsOwnerWhileStartingAWait(*this, false);
  first.callback();
  EXPECT_EQ(alive, 0);
  second.callback();
  EXPECT_TRUE(log.empty());
}

TEST_F(SelfDestruction, EndsTheCoroutineEvenWhenTheAnswerComesAtOnce) {
  owner->task = endingItsOwnerWhileStartingAWait(*this, true);
  first.callback();
  EXPECT_EQ(alive, 0);
  second.callback();
  EXPECT_TRUE(log.empty());
}

TEST_F(SelfDestruction, DoesNotAwaitATaskThatItHasJustStarted) {
  const auto parent = [](SelfDestruction& test) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.answer();
    test.owner.reset();
    co_await record(test.log, test.second, "child");
    test.log.push_back("never");
  };
  owner->task = parent(*this);
  first.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"child begins"}));
  EXPECT_EQ(alive, 0);
  second.callback();
  EXPECT_EQ(log.size(), 1U);
}

TEST_F(SelfDestruction, DoesNotGoOnAfterATaskThatHasFinishedAtOnce) {
  const auto nothing = []() -> Task<> { co_return; };
  const auto parent = [](SelfDestruction& test, auto child) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.answer();
    test.owner.reset();
    co_await child();
    test.log.push_back("never");
  };
  owner->task = parent(*this, nothing);
  first.callback();
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(alive, 0);
}

TEST_F(SelfDestruction, EndsTheCoroutineAtItsNextWaitAfterItHasAwaitedATask) {
  const auto parent = [](SelfDestruction& test) -> Task<> {
    const Witness witness(test.alive);
    co_await record(test.log, test.first, "child");
    test.owner.reset();
    EXPECT_EQ(test.alive, 1);
    co_await test.second.answer();
    test.log.push_back("never");
  };
  owner->task = parent(*this);
  first.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"child begins", "child ends"}));
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(second.calls, 0);
}

TEST_F(SelfDestruction, KeepsTheFramesOfAllWaitingTasksUntilTheRunningOneWaits) {
  // The innermost task uses a variable of the outermost frame after the owner's end.
  const auto inner = [](SelfDestruction& test, const std::string& borrowed) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.answer();
    test.owner.reset();
    test.log.push_back(borrowed);
    co_await test.second.answer();
    test.log.push_back("never");
  };
  const auto middle = [](SelfDestruction& test, auto next, const std::string& text) -> Task<> {
    const Witness witness(test.alive);
    co_await next(test, text);
    test.log.push_back("never");
  };
  const auto outer = [](SelfDestruction& test, auto next, auto last) -> Task<> {
    const Witness witness(test.alive);
    const std::string text = "a text too long to be stored inside of the string object";
    co_await next(test, last, text);
    test.log.push_back("never");
  };
  owner->task = outer(*this, middle, inner);
  EXPECT_EQ(alive, 3);
  first.callback();
  EXPECT_EQ(log,
            (std::vector<std::string>{"a text too long to be stored inside of the string object"}));
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(second.calls, 0);
}

TEST_F(SelfDestruction, ReplacingTheOwnTaskEndsTheOldRunOnly) {
  const auto again = [](SelfDestruction& test, auto self) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.answer();
    test.owner->task = record(test.log, test.second, "new");
    co_await self(test, self);
    test.log.push_back("never");
  };
  owner->task = again(*this, again);
  first.callback();
  EXPECT_EQ(alive, 0);
  EXPECT_TRUE(owner->task.isRunning());
  second.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"new begins", "new ends"}));
}

TEST_F(SelfDestruction, EndsWhenADestructorInTheFrameEndsTheOwner) {
  struct OwnerEnder {
    ~OwnerEnder() { test.owner.reset(); }
    SelfDestruction& test;
  };
  const auto run = [](SelfDestruction& test) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.answer();
    const OwnerEnder ender{test};
  };
  owner->task = run(*this);
  first.callback();
  EXPECT_EQ(owner, nullptr);
  EXPECT_EQ(alive, 0);
}

TEST(TaskAwait, PassesTheResultOfAnotherTask) {
  Door<int> door;
  int alive = 0;
  const auto plusOne = [](Door<int>& from, int& count) -> Task<int> {
    const Witness witness(count);
    co_return co_await doubled(from, count) + 1;
  };
  const Task<int> task = plusOne(door, alive);
  EXPECT_EQ(alive, 2);
  door.callback(10);
  EXPECT_EQ(task.result(), 21);
  EXPECT_EQ(alive, 0);
}

TEST(TaskAwait, AwaitsATaskThatWasStartedBefore) {
  Door<int> door;
  int alive = 0;
  const auto two = [](Door<int>& from, int& count) -> Task<int> {
    Task<int> early = doubled(from, count);
    co_await awaitCallback<void>([](Callback<void> done) { done(); });
    co_return co_await std::move(early);
  };
  const Task<int> task = two(door, alive);
  door.callback(4);
  EXPECT_EQ(task.result(), 8);
}

TEST(TaskAwait, EndsTheAwaitedTaskWithTheAwaitingOne) {
  Door<int> door;
  int alive = 0;
  const auto outer = [](Door<int>& from, int& count) -> Task<int> {
    const Witness witness(count);
    co_return co_await doubled(from, count);
  };
  {
    const Task<int> task = outer(door, alive);
    EXPECT_EQ(alive, 2);
  }
  EXPECT_EQ(alive, 0);
  door.callback(1);
}

TEST(TaskAwait, DoesNotUseUpTheStackInALoop) {
  Door<int> door;
  const auto one = [](Door<int>& from) -> Task<int> { co_return co_await from.answer(); };
  const auto sum = [](Door<int>& from, auto next) -> Task<int> {
    int total = 0;
    while (total < 100'000)
      total += co_await next(from);
    co_return total;
  };
  const Task<int> task = sum(door, one);
  while (task.isRunning()) {
    const Callback<int> callback = door.callback;
    callback(1);
  }
  EXPECT_EQ(task.result(), 100'000);
}

TEST(TaskDeathTest, StopsOnAnException) {
  const auto fails = []() -> Task<> {
    throw std::runtime_error("lost");
    co_return;
  };
  EXPECT_DEATH((void)fails(), "Fatal error: An exception left a task: lost \\(Task:");
}

TEST(TaskDeathTest, StopsWhenAskedForAResultTooEarly) {
  Door<int> door;
  int alive = 0;
  const Task<int> task = doubled(door, alive);
  EXPECT_DEATH((void)task.result(), "Fatal error: .*result before it has finished");
}

TEST(TaskDeathTest, StopsWhenAnEmptyTaskIsAwaited) {
  const auto run = []() -> Task<int> { co_return co_await Task<int>(); };
  EXPECT_DEATH((void)run(), "Fatal error: An empty task was awaited");
}

}  // namespace
}  // namespace navora
