#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/Task.h"

namespace navora {
namespace {

// An operation that completes when the test calls its callback.
template <class Value>
class Operation {
 public:
  CallbackAwaiter<Value> result() {
    return awaitCallback<Value>([this](Callback<Value> done) {
      ++calls;
      callback = std::move(done);
    });
  }

  Callback<Value> callback;
  int calls = 0;
};

// Counts its instances. One in a coroutine shows whether the frame still exists.
class Witness {
 public:
  explicit Witness(int& alive) : alive_(&alive) { ++*alive_; }
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;
  ~Witness() { --*alive_; }

 private:
  int* alive_;
};

Task<int> doubled(Operation<int>& operation, int& alive) {
  const Witness witness(alive);
  const int value = co_await operation.result();
  co_return value * 2;
}

Task<> record(std::vector<std::string>& log, Operation<void>& operation, std::string name) {
  log.push_back(name + " begins");
  co_await operation.result();
  log.push_back(name + " ends");
}

TEST(Task, RunsImmediatelyUntilItFirstSuspends) {
  std::vector<std::string> log;
  Operation<void> operation;
  const Task<> task = record(log, operation, "a");
  EXPECT_EQ(log, (std::vector<std::string>{"a begins"}));
  EXPECT_TRUE(task.isRunning());
  EXPECT_FALSE(task.isFinished());
  operation.callback();
  EXPECT_EQ(log.back(), "a ends");
  EXPECT_FALSE(task.isRunning());
  EXPECT_TRUE(task.isFinished());
}

TEST(Task, KeepsItsResult) {
  Operation<int> operation;
  int alive = 0;
  const Task<int> task = doubled(operation, alive);
  EXPECT_EQ(alive, 1);
  operation.callback(21);
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(task.result(), 42);
}

TEST(Task, AllowsItsResultToBeMovedOut) {
  const auto make = []() -> Task<std::unique_ptr<int>> { co_return std::make_unique<int>(3); };
  const Task<std::unique_ptr<int>> task = make();
  const std::unique_ptr<int> taken = std::move(task.result());
  EXPECT_EQ(*taken, 3);
}

TEST(Task, IsNeitherRunningNorFinishedIfEmpty) {
  const Task<int> task;
  EXPECT_FALSE(task.isRunning());
  EXPECT_FALSE(task.isFinished());
}

TEST(Task, ContinuesIfTheCallbackIsCalledImmediately) {
  const auto sum = []() -> Task<int> {
    int total = 0;
    for (int index = 0; index < 100'000; ++index)
      total += co_await awaitCallback<int>([](Callback<int> done) { done(1); });
    co_return total;
  };
  EXPECT_EQ(sum().result(), 100'000);
}

TEST(Task, IgnoresASecondCall) {
  Operation<int> first;
  Operation<int> second;
  const auto sum = [](Operation<int>& one, Operation<int>& two) -> Task<int> {
    const int value = co_await one.result();
    co_return value + co_await two.result();
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

TEST(Task, UsesTheFirstOfTwoImmediateCalls) {
  const auto run = []() -> Task<int> {
    co_return co_await awaitCallback<int>([](Callback<int> done) {
      done(1);
      done(2);
    });
  };
  EXPECT_EQ(run().result(), 1);
}

TEST(Task, PassesMoveOnlyValues) {
  Operation<std::unique_ptr<int>> operation;
  const auto read = [](Operation<std::unique_ptr<int>>& from) -> Task<int> {
    co_return *co_await from.result();
  };
  const Task<int> task = read(operation);
  operation.callback(std::make_unique<int>(9));
  EXPECT_EQ(task.result(), 9);
}

TEST(Task, StaysSuspendedIfItsCallbackIsDropped) {
  int alive = 0;
  Operation<int> operation;
  {
    const Task<int> task = doubled(operation, alive);
    operation.callback = nullptr;
    EXPECT_TRUE(task.isRunning());
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST(TaskDestruction, DestroysTheSuspendedFrameAndIgnoresTheLateCallback) {
  int alive = 0;
  Operation<int> operation;
  {
    const Task<int> task = doubled(operation, alive);
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
  operation.callback(1);
  operation.callback(2);
  EXPECT_EQ(alive, 0);
}

TEST(TaskDestruction, ReplacingATaskDestroysTheOldCoroutine) {
  std::vector<std::string> log;
  Operation<void> first;
  Operation<void> second;
  Task<> task = record(log, first, "a");
  task = record(log, second, "b");
  first.callback();
  second.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"a begins", "b begins", "b ends"}));
}

TEST(TaskDestruction, MovingATaskKeepsItsCoroutine) {
  std::vector<std::string> log;
  Operation<void> operation;
  Task<> task = record(log, operation, "a");
  const Task<> moved = std::move(task);
  operation.callback();
  EXPECT_EQ(log.back(), "a ends");
  EXPECT_TRUE(moved.isFinished());
}

TEST(TaskDestruction, MovingATaskToItselfKeepsItsCoroutine) {
  std::vector<std::string> log;
  Operation<void> operation;
  Task<> task = record(log, operation, "a");
  Task<>& same = task;
  task = std::move(same);
  operation.callback();
  EXPECT_EQ(log.back(), "a ends");
}

TEST(TaskDestruction, DestroysTheFrameOnceWhileTheCallbackIsHeld) {
  auto shared = std::make_shared<int>(1);
  Operation<std::shared_ptr<int>> operation;
  const auto read = [](Operation<std::shared_ptr<int>>& from) -> Task<> { co_await from.result(); };
  auto task = std::make_unique<Task<>>(read(operation));
  task.reset();
  operation.callback(shared);
  operation.callback = nullptr;
  EXPECT_EQ(shared.use_count(), 1);
}

// An owner whose task destroys it.
struct Owner {
  explicit Owner(std::vector<std::string>& events) : log(&events) {}

  std::vector<std::string>* log;
  Task<> task;
};

struct SelfDestruction : testing::Test {
  std::vector<std::string> log;
  int alive = 0;
  Operation<void> first;
  Operation<void> second;
  std::unique_ptr<Owner> owner = std::make_unique<Owner>(log);

  static Task<> endingItsOwner(SelfDestruction& test) {
    const Witness witness(test.alive);
    co_await test.first.result();
    test.owner.reset();
    test.log.push_back("after the end");
    co_await test.second.result();
    test.log.push_back("never");
  }

  static Task<> endingItsOwnerLast(SelfDestruction& test) {
    const Witness witness(test.alive);
    co_await test.first.result();
    test.owner.reset();
    test.log.push_back("after the end");
  }

  static Task<> endingItsOwnerWhileStartingAWait(SelfDestruction& test, bool answerAtOnce) {
    const Witness witness(test.alive);
    co_await test.first.result();
    co_await awaitCallback<void>([&test, answerAtOnce](Callback<void> done) {
      test.owner.reset();
      if (answerAtOnce) done();
      test.second.callback = std::move(done);
    });
    test.log.push_back("never");
  }
};

TEST_F(SelfDestruction, DestroysTheCoroutineAtItsNextAwaitWithoutStartingIt) {
  owner->task = endingItsOwner(*this);
  first.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"after the end"}));
  EXPECT_EQ(second.calls, 0);
  EXPECT_EQ(alive, 0);
  first.callback();
  EXPECT_EQ(alive, 0);
}

TEST_F(SelfDestruction, DestroysTheCoroutineAtItsReturn) {
  owner->task = endingItsOwnerLast(*this);
  first.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"after the end"}));
  EXPECT_EQ(alive, 0);
}

TEST_F(SelfDestruction, DestroysTheCoroutineInTheAwaitThatItIsStarting) {
  owner->task = endingItsOwnerWhileStartingAWait(*this, false);
  first.callback();
  EXPECT_EQ(alive, 0);
  second.callback();
  EXPECT_TRUE(log.empty());
}

TEST_F(SelfDestruction, DestroysTheCoroutineEvenIfTheCallbackIsCalledImmediately) {
  owner->task = endingItsOwnerWhileStartingAWait(*this, true);
  first.callback();
  EXPECT_EQ(alive, 0);
  second.callback();
  EXPECT_TRUE(log.empty());
}

TEST_F(SelfDestruction, DoesNotAwaitATaskThatItHasStarted) {
  const auto parent = [](SelfDestruction& test) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.result();
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

TEST_F(SelfDestruction, DoesNotContinueAfterATaskThatFinishedImmediately) {
  const auto nothing = []() -> Task<> { co_return; };
  const auto parent = [](SelfDestruction& test, auto child) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.result();
    test.owner.reset();
    co_await child();
    test.log.push_back("never");
  };
  owner->task = parent(*this, nothing);
  first.callback();
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(alive, 0);
}

TEST_F(SelfDestruction, DestroysTheCoroutineAtItsNextAwaitAfterAwaitingATask) {
  const auto parent = [](SelfDestruction& test) -> Task<> {
    const Witness witness(test.alive);
    co_await record(test.log, test.first, "child");
    test.owner.reset();
    EXPECT_EQ(test.alive, 1);
    co_await test.second.result();
    test.log.push_back("never");
  };
  owner->task = parent(*this);
  first.callback();
  EXPECT_EQ(log, (std::vector<std::string>{"child begins", "child ends"}));
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(second.calls, 0);
}

TEST_F(SelfDestruction, KeepsTheFramesOfAllAwaitingTasksUntilTheRunningOneSuspends) {
  // The innermost task uses a variable of the outermost frame after the owner was destroyed.
  const auto inner = [](SelfDestruction& test, const std::string& borrowed) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.result();
    test.owner.reset();
    test.log.push_back(borrowed);
    co_await test.second.result();
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

TEST_F(SelfDestruction, ReplacingItsOwnTaskDestroysTheOldCoroutineOnly) {
  const auto again = [](SelfDestruction& test, auto self) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.result();
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

TEST_F(SelfDestruction, IsDestroyedIfADestructorInTheFrameDestroysTheOwner) {
  struct OwnerEnder {
    ~OwnerEnder() { test.owner.reset(); }
    SelfDestruction& test;
  };
  const auto run = [](SelfDestruction& test) -> Task<> {
    const Witness witness(test.alive);
    co_await test.first.result();
    const OwnerEnder ender{test};
  };
  owner->task = run(*this);
  first.callback();
  EXPECT_EQ(owner, nullptr);
  EXPECT_EQ(alive, 0);
}

TEST(TaskAwait, PassesTheResultOfAnotherTask) {
  Operation<int> operation;
  int alive = 0;
  const auto plusOne = [](Operation<int>& from, int& count) -> Task<int> {
    const Witness witness(count);
    co_return co_await doubled(from, count) + 1;
  };
  const Task<int> task = plusOne(operation, alive);
  EXPECT_EQ(alive, 2);
  operation.callback(10);
  EXPECT_EQ(task.result(), 21);
  EXPECT_EQ(alive, 0);
}

TEST(TaskAwait, AwaitsATaskStartedEarlier) {
  Operation<int> operation;
  int alive = 0;
  const auto two = [](Operation<int>& from, int& count) -> Task<int> {
    Task<int> early = doubled(from, count);
    co_await awaitCallback<void>([](Callback<void> done) { done(); });
    co_return co_await std::move(early);
  };
  const Task<int> task = two(operation, alive);
  operation.callback(4);
  EXPECT_EQ(task.result(), 8);
}

TEST(TaskAwait, DestroysTheAwaitedTaskWithTheAwaitingOne) {
  Operation<int> operation;
  int alive = 0;
  const auto outer = [](Operation<int>& from, int& count) -> Task<int> {
    const Witness witness(count);
    co_return co_await doubled(from, count);
  };
  {
    const Task<int> task = outer(operation, alive);
    EXPECT_EQ(alive, 2);
  }
  EXPECT_EQ(alive, 0);
  operation.callback(1);
}

TEST(TaskAwait, DoesNotExhaustTheStackInALoop) {
  Operation<int> operation;
  const auto one = [](Operation<int>& from) -> Task<int> { co_return co_await from.result(); };
  const auto sum = [](Operation<int>& from, auto next) -> Task<int> {
    int total = 0;
    while (total < 100'000)
      total += co_await next(from);
    co_return total;
  };
  const Task<int> task = sum(operation, one);
  while (task.isRunning()) {
    const Callback<int> callback = operation.callback;
    callback(1);
  }
  EXPECT_EQ(task.result(), 100'000);
}

TEST(TaskDeathTest, AbortsOnAnException) {
  const auto fails = []() -> Task<> {
    throw std::runtime_error("lost");
    co_return;
  };
  EXPECT_DEATH((void)fails(), "Fatal error: An exception left a task: lost \\(Task:");
}

TEST(TaskDeathTest, AbortsIfTheResultIsRequestedTooEarly) {
  Operation<int> operation;
  int alive = 0;
  const Task<int> task = doubled(operation, alive);
  EXPECT_DEATH((void)task.result(), "Fatal error: The result of an unfinished task was requested");
}

TEST(TaskDeathTest, AbortsIfAnEmptyTaskIsAwaited) {
  const auto run = []() -> Task<int> { co_return co_await Task<int>(); };
  EXPECT_DEATH((void)run(), "Fatal error: An empty task was awaited");
}

}  // namespace
}  // namespace navora
