#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "support/Lifetime.h"

namespace navora {
namespace {

TEST(Lifetime, ForwardsCallbacksWhileItExists) {
  const Lifetime lifetime;
  std::string heard;
  const std::function<void(std::string, int)> callback =
      lifetime.guard([&](std::string text, int count) { heard = text + std::to_string(count); });
  callback("a", 1);
  EXPECT_EQ(heard, "a1");
}

TEST(Lifetime, DisablesCallbacksOfADestroyedOwner) {
  int calls = 0;
  std::function<void()> callback;
  {
    const Lifetime lifetime;
    callback = lifetime.guard([&] { ++calls; });
    callback();
  }
  callback();
  EXPECT_EQ(calls, 1);
}

TEST(Lifetime, AllowsACallbackToDestroyItsOwner) {
  auto lifetime = std::make_unique<Lifetime>();
  int calls = 0;
  const std::function<void()> callback = lifetime->guard([&] {
    ++calls;
    lifetime.reset();
  });
  callback();
  callback();
  EXPECT_EQ(calls, 1);
}

TEST(Lifetime, RenewalDisablesEarlierCallbacksOnly) {
  Lifetime lifetime;
  std::string heard;
  const std::function<void()> earlier = lifetime.guard([&] { heard += "earlier"; });
  lifetime.renew();
  const std::function<void()> later = lifetime.guard([&] { heard += "later"; });
  earlier();
  later();
  EXPECT_EQ(heard, "later");
}

TEST(Lifetime, ForwardsMoveOnlyArguments) {
  const Lifetime lifetime;
  int heard = 0;
  auto callback = lifetime.guard([&](std::unique_ptr<int> number) { heard = *number; });
  callback(std::make_unique<int>(5));
  EXPECT_EQ(heard, 5);
}

}  // namespace
}  // namespace navora
