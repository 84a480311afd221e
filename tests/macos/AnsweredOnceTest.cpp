#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "hosts/macos/web/AnsweredOnce.h"

namespace navora {
namespace {

using testing::ElementsAre;

class AnsweredOnceTest : public testing::Test {
 protected:
  std::function<void(bool)> question() {
    return answeredOnce(std::function<void(bool)>([this](bool value) { answers.push_back(value); }),
                        false);
  }

  std::vector<bool> answers;
};

TEST_F(AnsweredOnceTest, PassesTheAnswerOn) {
  question()(true);
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(AnsweredOnceTest, IgnoresEveryFurtherAnswer) {
  const auto answer = question();
  answer(true);
  answer(false);
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(AnsweredOnceTest, GivesTheNeutralAnswerWhenTheQuestionIsDropped) {
  {
    const auto dropped = question();
  }
  EXPECT_THAT(answers, ElementsAre(false));
}

TEST_F(AnsweredOnceTest, WaitsForTheLastCopy) {
  auto first = question();
  auto second = first;
  first = nullptr;
  EXPECT_TRUE(answers.empty());
  second(true);
  second = nullptr;
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(AnsweredOnceTest, IgnoresAnAnswerGivenWhileAnswering) {
  std::function<void(bool)> answer;
  answer = answeredOnce(std::function<void(bool)>([&](bool value) {
                          answers.push_back(value);
                          answer(!value);
                        }),
                        false);
  answer(true);
  EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(AnsweredOnceTest, HandsOverValuesOfAnyType) {
  std::optional<std::string> received = "nothing yet";
  {
    const auto dropped = answeredOnce(
        std::function<void(std::optional<std::string>)>([&](auto text) { received = text; }),
        std::nullopt);
  }
  EXPECT_EQ(received, std::nullopt);
}

TEST(AnsweredOnceWithoutValue, CallsTheHandlerOnce) {
  int calls = 0;
  {
    const auto answer = answeredOnce(std::function<void()>([&] { ++calls; }));
    answer();
    answer();
  }
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace navora
