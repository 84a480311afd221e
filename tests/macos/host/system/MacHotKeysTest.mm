#include "hosts/macos/system/MacHotKeys.h"

#include <vector>

#include <gmock/gmock.h>

#include "frameworks/AppKit/AppKitState.h"
#include "frameworks/Carbon/CarbonState.h"

namespace navora {
namespace {

constexpr HotKey commandShiftSpace{.keyCode = 49,
                                   .carbonModifiers = HotKey::carbonCommand | HotKey::carbonShift,
                                   .signature = 'NAVO',
                                   .identifier = 7};

class MacHotKeysTest : public testing::Test {
 protected:
  static bool press() {
    return doubles::pressHotKey(commandShiftSpace.keyCode, commandShiftSpace.carbonModifiers);
  }

  MacHotKeys hotKeys_;
};

TEST_F(MacHotKeysTest, CallsTheHandlerForTheRegisteredCombination) {
  int pressed = 0;
  EXPECT_EQ(hotKeys_.installEventHandler([&] { ++pressed; }), 0);
  EXPECT_FALSE(press());
  EXPECT_EQ(hotKeys_.registerHotKey(commandShiftSpace), 0);
  EXPECT_TRUE(press());
  EXPECT_EQ(pressed, 1);
  hotKeys_.unregisterHotKey();
  EXPECT_FALSE(press());
  EXPECT_EQ(pressed, 1);
}

TEST_F(MacHotKeysTest, RegistersWithSignatureAndIdentifier) {
  hotKeys_.registerHotKey(commandShiftSpace);
  const auto registered = doubles::registeredHotKeys();
  ASSERT_EQ(registered.size(), 1U);
  EXPECT_EQ(registered[0].identifier.signature, static_cast<OSType>('NAVO'));
  EXPECT_EQ(registered[0].identifier.id, 7U);
}

TEST_F(MacHotKeysTest, HoldsOneHotKeyAndOneHandler) {
  int first = 0;
  int second = 0;
  hotKeys_.installEventHandler([&] { ++first; });
  hotKeys_.installEventHandler([&] { ++second; });
  hotKeys_.registerHotKey(HotKey{.keyCode = 1});
  hotKeys_.registerHotKey(commandShiftSpace);
  EXPECT_EQ(doubles::registeredHotKeys().size(), 1U);
  EXPECT_TRUE(press());
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
  hotKeys_.removeEventHandler();
  EXPECT_FALSE(press());
}

TEST_F(MacHotKeysTest, ReportsTheErrorOfTheSystem) {
  MacHotKeys other;
  EXPECT_EQ(other.registerHotKey(commandShiftSpace), 0);
  EXPECT_EQ(hotKeys_.registerHotKey(commandShiftSpace), doubles::eventHotKeyExistsErr);
  doubles::failNextHotKeyCalls(-50);
  EXPECT_EQ(hotKeys_.installEventHandler([] {}), -50);
}

TEST_F(MacHotKeysTest, MonitorsSeeAndMayConsumeKeysOfOwnWindows) {
  std::vector<KeyEvent> seen;
  bool consumes = false;
  auto token = hotKeys_.addLocalKeyDownMonitor([&](const KeyEvent& event) {
    seen.push_back(event);
    return consumes;
  });
  NSEvent* event = doubles::makeKeyEvent(
      49, NSEventModifierFlagCommand | NSEventModifierFlagShift | 0x100 /* Device-dependent. */);
  EXPECT_EQ(doubles::dispatchKeyDown(event), event);
  consumes = true;
  EXPECT_EQ(doubles::dispatchKeyDown(event), nil);
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].keyCode, 49);
  EXPECT_EQ(seen[0].modifiers, KeyEvent::command | KeyEvent::shift);
  token.reset();
  EXPECT_EQ(doubles::dispatchKeyDown(event), event);
  EXPECT_EQ(seen.size(), 2U);
}

TEST_F(MacHotKeysTest, AMonitorMayRemoveItself) {
  std::unique_ptr<ObserverToken> token;
  int calls = 0;
  token = hotKeys_.addLocalKeyDownMonitor([&](const KeyEvent&) {
    token.reset();
    return ++calls > 0;
  });
  NSEvent* event = doubles::makeKeyEvent(1, 0);
  EXPECT_EQ(doubles::dispatchKeyDown(event), nil);
  EXPECT_EQ(doubles::dispatchKeyDown(event), event);
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace navora
