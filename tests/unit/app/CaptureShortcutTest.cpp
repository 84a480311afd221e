#include <memory>

#include <gmock/gmock.h>

#include "app/CaptureShortcut.h"
#include "fakes/FakePlatform.h"

namespace navora {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t commandShift = KeyEvent::command | KeyEvent::shift;

class CaptureShortcutTest : public testing::Test {
 protected:
  void make() {
    shortcut = std::make_unique<CaptureShortcut>(platform.hotKeys(), platform.mainQueue(),
                                                 platform.system(), [this] { ++presses; });
  }
  bool pressLocally(std::uint16_t key, std::uint32_t modifiers) {
    return platform.hotKeys().pressLocally({key, modifiers});
  }
  // Returns the standard error of creating the shortcut and pressing it once.
  std::string debugLines() {
    testing::internal::CaptureStderr();
    make();
    if (platform.hotKeys().hasEventHandler()) platform.hotKeys().press();
    return testing::internal::GetCapturedStderr();
  }

  FakePlatform platform;
  int presses = 0;
  std::unique_ptr<CaptureShortcut> shortcut;
};

TEST_F(CaptureShortcutTest, RegistersTheMonitorTheHandlerAndTheKeyInOrder) {
  make();
  EXPECT_THAT(
      platform.log().take(),
      ElementsAre("hotKeys.addLocalMonitor", "hotKeys.installEventHandler", "hotKeys.register"));
  EXPECT_EQ(platform.hotKeys().registered(), (HotKey{49, 768, 0x4E41564F, 1}));
  EXPECT_FALSE(shortcut->isTaken());
}

TEST_F(CaptureShortcutTest, UnregistersEverythingInOrder) {
  make();
  platform.log().take();
  shortcut.reset();
  EXPECT_THAT(platform.log().take(), ElementsAre("hotKeys.unregister", "hotKeys.removeEventHandler",
                                                 "hotKeys.removeLocalMonitor"));
}

TEST_F(CaptureShortcutTest, ActsOnTheMainQueueWhenTheHotKeyIsPressed) {
  make();
  platform.hotKeys().press();
  EXPECT_EQ(presses, 0);
  platform.mainQueue().runDue();
  EXPECT_EQ(presses, 1);
}

TEST_F(CaptureShortcutTest, DoesNothingAfterItsDestruction) {
  make();
  platform.hotKeys().press();
  shortcut.reset();
  platform.mainQueue().runDue();
  EXPECT_EQ(presses, 0);
}

TEST_F(CaptureShortcutTest, ConsumesTheKeyInItsOwnWindows) {
  make();
  EXPECT_TRUE(pressLocally(KeyEvent::spaceKey, commandShift));
  EXPECT_EQ(presses, 1);
}

TEST_F(CaptureShortcutTest, IgnoresLocksAndTheFunctionKey) {
  make();
  for (const auto more : {KeyEvent::capsLock, KeyEvent::numericPad, KeyEvent::function})
    EXPECT_TRUE(pressLocally(KeyEvent::spaceKey, commandShift | more)) << more;
  EXPECT_EQ(presses, 3);
}

TEST_F(CaptureShortcutTest, IgnoresEveryOtherKey) {
  make();
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, commandShift | KeyEvent::option));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, commandShift | KeyEvent::control));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, KeyEvent::command));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, KeyEvent::shift));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, 0));
  EXPECT_FALSE(pressLocally(KeyEvent::returnKey, commandShift));
  EXPECT_EQ(presses, 0);
}

TEST_F(CaptureShortcutTest, WorksInItsOwnWindowsIfAnotherApplicationHasTheKey) {
  platform.hotKeys().registerStatus = -9878;
  make();
  EXPECT_TRUE(shortcut->isTaken());
  EXPECT_TRUE(pressLocally(KeyEvent::spaceKey, commandShift));
  platform.log().take();
  shortcut.reset();
  EXPECT_THAT(platform.log().take(),
              ElementsAre("hotKeys.removeEventHandler", "hotKeys.removeLocalMonitor"));
}

TEST_F(CaptureShortcutTest, RegistersNoKeyWithoutAHandler) {
  platform.hotKeys().installStatus = -50;
  make();
  EXPECT_FALSE(shortcut->isTaken());
  EXPECT_FALSE(platform.hotKeys().registered());
  platform.log().take();
  shortcut.reset();
  EXPECT_THAT(platform.log().take(), ElementsAre("hotKeys.removeLocalMonitor"));
}

TEST_F(CaptureShortcutTest, WritesDebugLinesOnRequest) {
  platform.system().environment["NAVORA_DEBUG_HOTKEY"] = "1";
  EXPECT_EQ(debugLines(),
            "Navora hotkey: InstallEventHandler status=0\n"
            "Navora hotkey: RegisterEventHotKey status=0, keyCode=49, modifiers=768\n"
            "Navora hotkey: Carbon event received\n");
}

TEST_F(CaptureShortcutTest, WritesTheStatusOfAFailure) {
  platform.system().environment["NAVORA_DEBUG_HOTKEY"] = "1";
  platform.hotKeys().installStatus = -50;
  EXPECT_EQ(debugLines(), "Navora hotkey: InstallEventHandler status=-50\n");
  shortcut.reset();
  platform.hotKeys().installStatus = 0;
  platform.hotKeys().registerStatus = -9878;
  EXPECT_EQ(debugLines(),
            "Navora hotkey: InstallEventHandler status=0\n"
            "Navora hotkey: RegisterEventHotKey status=-9878, keyCode=49, modifiers=768\n"
            "Navora hotkey: Carbon event received\n");
}

TEST_F(CaptureShortcutTest, WritesNothingForAnyOtherValue) {
  for (const char* value : {"", "0", "true", "yes", "1 ", "11"}) {
    platform.system().environment["NAVORA_DEBUG_HOTKEY"] = value;
    EXPECT_EQ(debugLines(), "") << value;
    shortcut.reset();
  }
}

}  // namespace
}  // namespace navora
