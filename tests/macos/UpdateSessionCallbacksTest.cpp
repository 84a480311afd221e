#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "hosts/macos/updates/UpdateSessionCallbacks.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UpdateSessionCallbacksTest : public testing::Test {
 protected:
  std::function<void(std::string)> answer() {
    return [this](std::string value) { answers.push_back(std::move(value)); };
  }

  UpdateSessionCallbacks callbacks;
  std::vector<std::string> answers;
};

TEST_F(UpdateSessionCallbacksTest, ForwardsOnlyTheFirstAnswer) {
  const auto choose = callbacks.once(answer());
  choose("install");
  choose("dismiss");
  EXPECT_THAT(answers, ElementsAre("install"));
}

TEST_F(UpdateSessionCallbacksTest, CountsTheAnswersOfAllCopiesTogether) {
  const auto choose = callbacks.once(answer());
  const auto copy = choose;
  copy("dismiss");
  choose("install");
  EXPECT_THAT(answers, ElementsAre("dismiss"));
}

TEST_F(UpdateSessionCallbacksTest, DoesNotAnswerWhenDestroyed) {
  callbacks.once(answer());
  EXPECT_THAT(answers, IsEmpty());
}

TEST_F(UpdateSessionCallbacksTest, ReleasesTheCallbackAfterTheAnswer) {
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> watched = held;
  const auto acknowledge = callbacks.once(std::function<void()>([held] {}));
  held.reset();
  ASSERT_FALSE(watched.expired());
  acknowledge();
  EXPECT_TRUE(watched.expired());
}

TEST_F(UpdateSessionCallbacksTest, ForwardsEveryCallOfARepeatableCallback) {
  const auto retry = callbacks.repeatable(answer());
  retry("once");
  retry("again");
  EXPECT_THAT(answers, ElementsAre("once", "again"));
}

TEST_F(UpdateSessionCallbacksTest, IgnoresAnswersAfterTheSession) {
  const auto choose = callbacks.once(answer());
  const auto retry = callbacks.repeatable(answer());
  callbacks.endSession();
  choose("install");
  retry("again");
  EXPECT_THAT(answers, IsEmpty());
}

TEST_F(UpdateSessionCallbacksTest, IgnoresTheLastSessionDuringTheNextOne) {
  const auto stale = callbacks.once(answer());
  callbacks.endSession();
  const auto choose = callbacks.once(answer());
  stale("stale");
  choose("install");
  EXPECT_THAT(answers, ElementsAre("install"));
}

TEST_F(UpdateSessionCallbacksTest, IgnoresAnswersAfterItsDestruction) {
  std::optional<UpdateSessionCallbacks> owner(std::in_place);
  const auto choose = owner->once(answer());
  owner.reset();
  choose("install");
  EXPECT_THAT(answers, IsEmpty());
}

TEST_F(UpdateSessionCallbacksTest, LetsAnAnswerEndTheSession) {
  const auto choose = callbacks.once(std::function<void(std::string)>([this](std::string value) {
    callbacks.endSession();
    answers.push_back(std::move(value));
  }));
  choose("dismiss");
  choose("install");
  EXPECT_THAT(answers, ElementsAre("dismiss"));
}

}  // namespace
}  // namespace navora
