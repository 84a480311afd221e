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
    shortcut_ = std::make_unique<CaptureShortcut>(platform_.hotKeys(), platform_.mainQueue(),
                                                  platform_.system(), [this] { ++presses_; });
  }
  bool pressLocally(std::uint16_t key, std::uint32_t modifiers) {
    return platform_.hotKeys().pressLocally({key, modifiers});
  }
  // Returns the standard error of creating the shortcut and pressing it once.
  std::string debugLines() {
    testing::internal::CaptureStderr();
    make();
    if (platform_.hotKeys().hasEventHandler()) platform_.hotKeys().press();
    return testing::internal::GetCapturedStderr();
  }

  FakePlatform platform_;
  int presses_ = 0;
  std::unique_ptr<CaptureShortcut> shortcut_;
};

TEST_F(CaptureShortcutTest, RegistersTheMonitorTheHandlerAndTheKeyInOrder) {
  make();
  EXPECT_THAT(
      platform_.log().take(),
      ElementsAre("hotKeys.addLocalMonitor", "hotKeys.installEventHandler", "hotKeys.register"));
  EXPECT_EQ(platform_.hotKeys().registered(), (HotKey{49, 768, 0x4E41564F, 1}));
  EXPECT_FALSE(shortcut_->isTaken());
}

TEST_F(CaptureShortcutTest, UnregistersEverythingInOrder) {
  make();
  platform_.log().take();
  shortcut_.reset();
  EXPECT_THAT(platform_.log().take(),
              ElementsAre("hotKeys.unregister", "hotKeys.removeEventHandler",
                          "hotKeys.removeLocalMonitor"));
}

TEST_F(CaptureShortcutTest, ActsOnTheMainQueueWhenTheHotKeyIsPressed) {
  make();
  platform_.hotKeys().press();
  EXPECT_EQ(presses_, 0);
  platform_.mainQueue().runDue();
  EXPECT_EQ(presses_, 1);
}

TEST_F(CaptureShortcutTest, DoesNothingAfterItsDestruction) {
  make();
  platform_.hotKeys().press();
  shortcut_.reset();
  platform_.mainQueue().runDue();
  EXPECT_EQ(presses_, 0);
}

TEST_F(CaptureShortcutTest, ConsumesTheKeyInItsOwnWindows) {
  make();
  EXPECT_TRUE(pressLocally(KeyEvent::spaceKey, commandShift));
  EXPECT_EQ(presses_, 1);
}

TEST_F(CaptureShortcutTest, IgnoresLocksAndTheFunctionKey) {
  make();
  for (const auto more : {KeyEvent::capsLock, KeyEvent::numericPad, KeyEvent::function})
    EXPECT_TRUE(pressLocally(KeyEvent::spaceKey, commandShift | more)) << more;
  EXPECT_EQ(presses_, 3);
}

TEST_F(CaptureShortcutTest, IgnoresEveryOtherKey) {
  make();
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, commandShift | KeyEvent::option));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, commandShift | KeyEvent::control));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, KeyEvent::command));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, KeyEvent::shift));
  EXPECT_FALSE(pressLocally(KeyEvent::spaceKey, 0));
  EXPECT_FALSE(pressLocally(KeyEvent::returnKey, commandShift));
  EXPECT_EQ(presses_, 0);
}

TEST_F(CaptureShortcutTest, WorksInItsOwnWindowsIfAnotherApplicationHasTheKey) {
  platform_.hotKeys().registerStatus = -9878;
  make();
  EXPECT_TRUE(shortcut_->isTaken());
  EXPECT_TRUE(pressLocally(KeyEvent::spaceKey, commandShift));
  platform_.log().take();
  shortcut_.reset();
  EXPECT_THAT(platform_.log().take(),
              ElementsAre("hotKeys.removeEventHandler", "hotKeys.removeLocalMonitor"));
}

TEST_F(CaptureShortcutTest, RegistersNoKeyWithoutAHandler) {
  platform_.hotKeys().installStatus = -50;
  make();
  EXPECT_FALSE(shortcut_->isTaken());
  EXPECT_FALSE(platform_.hotKeys().registered());
  platform_.log().take();
  shortcut_.reset();
  EXPECT_THAT(platform_.log().take(), ElementsAre("hotKeys.removeLocalMonitor"));
}

TEST_F(CaptureShortcutTest, WritesDebugLinesOnRequest) {
  platform_.system().environment["NAVORA_DEBUG_HOTKEY"] = "1";
  EXPECT_EQ(debugLines(),
            "Navora hotkey: InstallEventHandler status=0\n"
            "Navora hotkey: RegisterEventHotKey status=0, keyCode=49, modifiers=768\n"
            "Navora hotkey: Carbon event received\n");
}

TEST_F(CaptureShortcutTest, WritesTheStatusOfAFailure) {
  platform_.system().environment["NAVORA_DEBUG_HOTKEY"] = "1";
  platform_.hotKeys().installStatus = -50;
  EXPECT_EQ(debugLines(), "Navora hotkey: InstallEventHandler status=-50\n");
  shortcut_.reset();
  platform_.hotKeys().installStatus = 0;
  platform_.hotKeys().registerStatus = -9878;
  EXPECT_EQ(debugLines(),
            "Navora hotkey: InstallEventHandler status=0\n"
            "Navora hotkey: RegisterEventHotKey status=-9878, keyCode=49, modifiers=768\n"
            "Navora hotkey: Carbon event received\n");
}

TEST_F(CaptureShortcutTest, WritesTheSameToTheDebugLog) {
  debugLines();
  EXPECT_THAT(platform_.system().debugged,
              ElementsAre("hotkey: InstallEventHandler status=0",
                          "hotkey: RegisterEventHotKey status=0, keyCode=49, modifiers=768",
                          "hotkey: Carbon event received"));
}

TEST_F(CaptureShortcutTest, WritesNothingForAnyOtherValue) {
  for (const char* value : {"", "0", "true", "yes", "1 ", "11"}) {
    platform_.system().environment["NAVORA_DEBUG_HOTKEY"] = value;
    EXPECT_EQ(debugLines(), "") << value;
    shortcut_.reset();
  }
}

}  // namespace
}  // namespace navora
