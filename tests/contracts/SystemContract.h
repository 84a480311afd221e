#pragma once

#include <functional>
#include <memory>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "contracts/MainLoop.h"
#include "platform/System.h"

namespace navora {

// The contract of System, for the fake and for every host's implementation.
template <typename Machine>
class SystemContractTest : public testing::Test {
 protected:
  System& system() { return machine_.system(); }

  // The real observers connect to the bus asynchronously, so the signal is repeated.
  testing::AssertionResult wakeUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
      if (condition()) return true;
      machine_.wake();
      return condition();
    });
  }

  Machine machine_;
};

TYPED_TEST_SUITE_P(SystemContractTest);

TYPED_TEST_P(SystemContractTest, MakesRandomIdentifiersInLowerCase) {
  std::set<std::string> identifiers;
  for (int count = 0; count < 100; ++count) {
    const std::string identifier = this->system().randomUuid();
    // Version 4, variant 1.
    EXPECT_TRUE(std::regex_match(
        identifier,
        std::regex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}")))
        << identifier;
    EXPECT_TRUE(identifiers.insert(identifier).second) << identifier << " is not unique";
  }
}

TYPED_TEST_P(SystemContractTest, ReturnsThePresentTimeZone) {
  EXPECT_EQ(this->system().timeZoneIdentifier(), "Europe/Moscow");
  this->machine_.changeTimeZone("Asia/Tokyo");
  EXPECT_EQ(this->system().timeZoneIdentifier(), "Asia/Tokyo");
}

TYPED_TEST_P(SystemContractTest, ObserversSeeTheNewTimeZone) {
  std::string first;
  std::string second;
  const auto firstToken =
      this->system().observeTimeZoneChange([&] { first = this->system().timeZoneIdentifier(); });
  const auto secondToken =
      this->system().observeTimeZoneChange([&] { second = this->system().timeZoneIdentifier(); });
  this->machine_.changeTimeZone("Asia/Tokyo");
  EXPECT_TRUE(waitUntil([&] { return first == "Asia/Tokyo" && second == "Asia/Tokyo"; }));
  this->machine_.changeTimeZone("America/Lima");
  EXPECT_TRUE(waitUntil([&] { return first == "America/Lima" && second == "America/Lima"; }));
}

TYPED_TEST_P(SystemContractTest, ADestroyedTimeZoneObserverIsNotCalled) {
  int released = 0;
  bool kept = false;
  auto token = this->system().observeTimeZoneChange([&] { ++released; });
  const auto other = this->system().observeTimeZoneChange([&] { kept = true; });
  token.reset();
  this->machine_.changeTimeZone("Asia/Tokyo");
  ASSERT_TRUE(waitUntil([&] { return kept; }));
  runPendingEvents();
  EXPECT_EQ(released, 0);
}

TYPED_TEST_P(SystemContractTest, ATimeZoneObserverMayDestroyItself) {
  // Owned by the callback: destroying the callback while it runs would be a use after free.
  const std::string marker(100, 'x');
  std::string seen;
  std::unique_ptr<ObserverToken> token;
  token = this->system().observeTimeZoneChange([&token, &seen, marker] {
    token.reset();
    seen = marker;
  });
  this->machine_.changeTimeZone("Asia/Tokyo");
  ASSERT_TRUE(waitUntil([&] { return !seen.empty(); }));
  EXPECT_EQ(seen, marker);
}

TYPED_TEST_P(SystemContractTest, EveryWakeObserverIsCalled) {
  int first = 0;
  int second = 0;
  const auto firstToken = this->system().observeWake([&] { ++first; });
  const auto secondToken = this->system().observeWake([&] { ++second; });
  EXPECT_TRUE(this->wakeUntil([&] { return first > 0 && second > 0; }));
}

TYPED_TEST_P(SystemContractTest, ADestroyedWakeObserverIsNotCalled) {
  int released = 0;
  bool kept = false;
  auto token = this->system().observeWake([&] { ++released; });
  const auto other = this->system().observeWake([&] { kept = true; });
  ASSERT_TRUE(this->wakeUntil([&] { return kept && released > 0; }));
  token.reset();
  released = 0;
  kept = false;
  ASSERT_TRUE(this->wakeUntil([&] { return kept; }));
  runPendingEvents();
  EXPECT_EQ(released, 0);
}

TYPED_TEST_P(SystemContractTest, AWakeObserverMayBeDestroyedAtOnce) {
  int released = 0;
  this->system().observeWake([&] { ++released; }).reset();
  bool kept = false;
  const auto other = this->system().observeWake([&] { kept = true; });
  ASSERT_TRUE(this->wakeUntil([&] { return kept; }));
  EXPECT_EQ(released, 0);
}

TYPED_TEST_P(SystemContractTest, AWakeObserverMayDestroyItself) {
  const std::string marker(100, 'x');
  std::string seen;
  std::unique_ptr<ObserverToken> token;
  token = this->system().observeWake([&token, &seen, marker] {
    token.reset();
    seen = marker;
  });
  ASSERT_TRUE(this->wakeUntil([&] { return !seen.empty(); }));
  EXPECT_EQ(seen, marker);
}

REGISTER_TYPED_TEST_SUITE_P(SystemContractTest, MakesRandomIdentifiersInLowerCase,
                            ReturnsThePresentTimeZone, ObserversSeeTheNewTimeZone,
                            ADestroyedTimeZoneObserverIsNotCalled,
                            ATimeZoneObserverMayDestroyItself, EveryWakeObserverIsCalled,
                            ADestroyedWakeObserverIsNotCalled, AWakeObserverMayBeDestroyedAtOnce,
                            AWakeObserverMayDestroyItself);

}  // namespace navora
