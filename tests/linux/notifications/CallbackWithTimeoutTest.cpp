#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/linux/notifications/CallbackWithTimeout.h"
#include "linux/support/MainLoop.h"

namespace navora {
namespace {

using Answers = std::vector<std::string>;

class CallbackWithTimeoutTest : public testing::Test {
 protected:
  CallbackWithTimeout<std::string>::Pointer start(std::chrono::milliseconds patience) {
    return CallbackWithTimeout<std::string>::start(
        patience, [answers = answers](std::string answer) { answers->push_back(answer); }, "late");
  }

  std::shared_ptr<Answers> answers = std::make_shared<Answers>();
};

TEST_F(CallbackWithTimeoutTest, TheFirstCounts) {
  const auto answer = start(std::chrono::hours(1));
  EXPECT_FALSE(answer->isGiven());
  answer->give("first");
  EXPECT_TRUE(answer->isGiven());
  answer->give("second");
  EXPECT_EQ(*answers, Answers{"first"});
}

TEST_F(CallbackWithTimeoutTest, NoneInTimeIsAnAnswerToo) {
  const auto answer = start(std::chrono::milliseconds(1));
  EXPECT_TRUE(answers->empty());
  ASSERT_TRUE(waitUntil([&] { return answer->isGiven(); }));
  answer->give("after that");
  EXPECT_EQ(*answers, Answers{"late"});
}

TEST_F(CallbackWithTimeoutTest, ComesEvenIfEverybodyHasForgottenTheQuestion) {
  start(std::chrono::milliseconds(1));
  EXPECT_TRUE(waitUntil([&] { return !answers->empty(); }));
}

TEST_F(CallbackWithTimeoutTest, KeepsNothingOnceItIsGiven) {
  auto answer = start(std::chrono::hours(1));
  EXPECT_EQ(answers.use_count(), 2);
  answer->give("first");
  EXPECT_EQ(answers.use_count(), 1);
  const std::weak_ptr<CallbackWithTimeout<std::string>> watch = answer;
  answer.reset();
  EXPECT_TRUE(watch.expired());
}

// Whoever receives the answer may let go of it.
TEST_F(CallbackWithTimeoutTest, MayBeReleasedByItsReceiver) {
  CallbackWithTimeout<int>::Pointer answer;
  int received = 0;
  answer = CallbackWithTimeout<int>::start(
      std::chrono::hours(1),
      [&](int value) {
        answer.reset();
        received = value;
      },
      0);
  answer->give(5);
  EXPECT_EQ(received, 5);
}

}  // namespace
}  // namespace navora
