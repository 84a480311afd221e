#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "hosts/macos/web/OnceCallback.h"

namespace navora {
namespace {

using testing::ElementsAre;

class OnceCallbackTest : public testing::Test {
 protected:
  std::function<void(bool)> callback() {
    return onceCallback(std::function<void(bool)>([this](bool value) { answers.push_back(value); }),
                        false);
  }

  std::vector<bool> answers;
};

TEST_F(OnceCallbackTest, ForwardsTheAnswer) {
  callback()(true);
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(OnceCallbackTest, IgnoresFurtherAnswers) {
  const auto answer = callback();
  answer(true);
  answer(false);
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(OnceCallbackTest, GivesTheNeutralAnswerWhenDestroyedUnanswered) {
  {
    const auto dropped = callback();
  }
  EXPECT_THAT(answers, ElementsAre(false));
}

TEST_F(OnceCallbackTest, WaitsUntilTheLastCopyIsDestroyed) {
  auto first = callback();
  auto second = first;
  first = nullptr;
  EXPECT_TRUE(answers.empty());
  second(true);
  second = nullptr;
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(OnceCallbackTest, IgnoresAnAnswerFromWithinTheHandler) {
  std::function<void(bool)> answer;
  answer = onceCallback(std::function<void(bool)>([&](bool value) {
                          answers.push_back(value);
                          answer(!value);
                        }),
                        false);
  answer(true);
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(OnceCallbackTest, ForwardsValuesOfAnyType) {
  std::optional<std::string> received = "nothing yet";
  {
    const auto dropped = onceCallback(
        std::function<void(std::optional<std::string>)>([&](auto text) { received = text; }),
        std::nullopt);
  }
  EXPECT_EQ(received, std::nullopt);
}

TEST(OnceCallbackWithoutValue, CallsTheHandlerOnce) {
  int calls = 0;
  {
    const auto answer = onceCallback(std::function<void()>([&] { ++calls; }));
    answer();
    answer();
  }
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace navora
