#include <vector>

#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>

#include "end_to_end/driver/XConnection.h"
#include "hosts/linux/keyboard/LinuxHotKeys.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"

#include <X11/XKBlib.h>
#include <gdk/gdkx.h>

// Xlib defines Status as a macro; it is a type of the platform interface.
#undef Status

namespace navora {
namespace {

constexpr HotKey captureKey{.keyCode = KeyEvent::spaceKey,
                            .carbonModifiers = HotKey::carbonCommand | HotKey::carbonShift};
constexpr unsigned controlShift = ControlMask | ShiftMask;

Display* display() {
  return GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
}

// Another X client, which grabs combinations too.
class OtherClient {
 public:
  bool grab(unsigned modifiers) {
    const auto cookie = xcb_grab_key_checked(
        connection_.get(), 0, connection_.root(), static_cast<std::uint16_t>(modifiers),
        XKeysymToKeycode(display(), GDK_KEY_space), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const driver::XReply<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
    return error == nullptr;
  }

 private:
  driver::XConnection connection_{TestDesktop::current().display().name()};
};

// Counts the key presses that the X server sends for grabs, including auto-repeat.
class PressCounter {
 public:
  PressCounter() { gdk_window_add_filter(gdk_get_default_root_window(), onEvent, this); }
  ~PressCounter() { gdk_window_remove_filter(gdk_get_default_root_window(), onEvent, this); }
  PressCounter(const PressCounter&) = delete;
  PressCounter& operator=(const PressCounter&) = delete;

  int count() const { return count_; }

 private:
  static GdkFilterReturn onEvent(GdkXEvent* event, GdkEvent*, gpointer self) {
    if (static_cast<const XEvent*>(event)->type == KeyPress)
      ++static_cast<PressCounter*>(self)->count_;
    return GDK_FILTER_CONTINUE;
  }

  int count_ = 0;
};

class LinuxHotKeysTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(hotKeys_.installEventHandler([this] { ++presses_; }), 0);
  }

  // Presses the keys and then the marker, a combination that the fixture has grabbed: when the
  // marker arrives, the keys have been processed.
  testing::AssertionResult pressesArrive(const std::string& keys, int expected,
                                         const std::string& marker = "Control+Alt+space") {
    presses_ = 0;
    const int before = markers_;
    keyboard_.chord(keys);
    keyboard_.chord(marker);
    const auto marked = waitUntil([&] { return markers_ > before; });
    if (!marked) return testing::AssertionFailure() << "the marker did not arrive";
    if (presses_ != expected)
      return testing::AssertionFailure() << keys << " was caught " << presses_ << " times";
    return testing::AssertionSuccess();
  }

  driver::Keyboard& keyboard_ = TestDesktop::current().keyboard();
  LinuxHotKeys hotKeys_;
  int presses_ = 0;
  int markers_ = 0;
  // Command and Option.
  KeyGrab marker_{{.keyCode = KeyEvent::spaceKey,
                   .carbonModifiers = HotKey::carbonCommand | HotKey::carbonOption},
                  [this] { ++markers_; }};
};

TEST_F(LinuxHotKeysTest, CatchesTheCombinationWithoutTheFocus) {
  ASSERT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  EXPECT_TRUE(pressesArrive("Control+Shift+space", 1));
  EXPECT_TRUE(pressesArrive("Control+Shift+space", 1));
}

TEST_F(LinuxHotKeysTest, LeavesOtherCombinationsAlone) {
  ASSERT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  for (const char* keys : {"Control+space", "Shift+space", "Control+Shift+Alt+space",
                           "Control+Shift+Super+space", "Control+Shift+a"}) {
    EXPECT_TRUE(pressesArrive(keys, 0));
  }
}

TEST_F(LinuxHotKeysTest, CatchesItInEveryStateOfTheLockKeys) {
  ASSERT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  for (const char* lock : {"Caps_Lock", "Num_Lock", "Caps_Lock", "Num_Lock"}) {
    keyboard_.chord(lock);
    EXPECT_TRUE(pressesArrive("Control+Shift+space", 1)) << "after " << lock;
  }
}

TEST_F(LinuxHotKeysTest, CatchesAHeldKeyOnce) {
  unsigned delay = 0;
  unsigned interval = 0;
  ASSERT_TRUE(XkbGetAutoRepeatRate(display(), XkbUseCoreKbd, &delay, &interval));
  ASSERT_TRUE(XkbSetAutoRepeatRate(display(), XkbUseCoreKbd, 30, 10));
  const PressCounter sent;
  ASSERT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  {
    const driver::Keyboard::Hold held(keyboard_, "Control+Shift+space");
    EXPECT_TRUE(waitUntil([&] { return sent.count() > 5; })) << "the keyboard does not repeat";
    EXPECT_EQ(presses_, 1);
    // Shift is released and pressed again while the space bar is held.
    keyboard_.release("Shift");
    const int before = sent.count();
    keyboard_.press("Shift");
    EXPECT_TRUE(waitUntil([&] { return sent.count() > before + 5; }));
    EXPECT_EQ(presses_, 1);
  }
  EXPECT_TRUE(XkbSetAutoRepeatRate(display(), XkbUseCoreKbd, delay, interval));
  EXPECT_TRUE(pressesArrive("Control+Shift+space", 1));
}

TEST_F(LinuxHotKeysTest, FailsIfAnotherClientHasTheCombination) {
  OtherClient other;
  ASSERT_TRUE(other.grab(controlShift));
  EXPECT_EQ(hotKeys_.registerHotKey(captureKey), BadAccess);
  EXPECT_TRUE(pressesArrive("Control+Shift+space", 0));
}

TEST_F(LinuxHotKeysTest, GrabsNothingIfOneVariantIsTaken) {
  OtherClient other;
  ASSERT_TRUE(other.grab(controlShift | LockMask));
  EXPECT_EQ(hotKeys_.registerHotKey(captureKey), BadAccess);
  EXPECT_TRUE(other.grab(controlShift));
  EXPECT_TRUE(other.grab(controlShift | Mod2Mask));
}

TEST_F(LinuxHotKeysTest, UnregisteringReleasesTheCombination) {
  ASSERT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  EXPECT_FALSE(OtherClient().grab(controlShift));
  hotKeys_.unregisterHotKey();
  runPendingEvents();
  EXPECT_TRUE(OtherClient().grab(controlShift));
  EXPECT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  EXPECT_TRUE(pressesArrive("Control+Shift+space", 1));
}

TEST_F(LinuxHotKeysTest, RemovingTheHandlerReleasesTheCombination) {
  ASSERT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  hotKeys_.removeEventHandler();
  EXPECT_TRUE(pressesArrive("Control+Shift+space", 0));
  EXPECT_TRUE(OtherClient().grab(controlShift));
}

// Exchanges the symbols of two keys for a scope.
class SwappedKeys {
 public:
  SwappedKeys(KeySym first, KeySym second) : first_(first), second_(second) { swap(); }
  ~SwappedKeys() {
    swap();
    XSync(display(), False);
  }
  SwappedKeys(const SwappedKeys&) = delete;
  SwappedKeys& operator=(const SwappedKeys&) = delete;

 private:
  void swap() {
    const KeyCode first = code(first_);
    const KeyCode second = code(second_);
    change(first, second_);
    change(second, first_);
    XSync(display(), False);
  }
  static KeyCode code(KeySym symbol) { return XKeysymToKeycode(display(), symbol); }
  static void change(KeyCode key, KeySym symbol) {
    std::vector<KeySym> symbols(2, symbol);
    XChangeKeyboardMapping(display(), key, 2, symbols.data(), 1);
  }

  const KeySym first_;
  const KeySym second_;
};

TEST_F(LinuxHotKeysTest, FollowsAChangeOfTheKeyboardMapping) {
  ASSERT_EQ(hotKeys_.registerHotKey(captureKey), 0);
  const KeyCode was = XKeysymToKeycode(display(), GDK_KEY_space);
  {
    const SwappedKeys swapped(GDK_KEY_space, GDK_KEY_F11);
    ASSERT_TRUE(waitUntil([&] { return XKeysymToKeycode(display(), GDK_KEY_space) != was; }));
    runPendingEvents();
    // The key that was F11 is the space bar now.
    EXPECT_TRUE(pressesArrive("Control+Shift+F11", 1, "Control+Alt+F11"));
    EXPECT_TRUE(pressesArrive("Control+Shift+space", 0, "Control+Alt+F11"));
  }
  ASSERT_TRUE(waitUntil([&] { return XKeysymToKeycode(display(), GDK_KEY_space) == was; }));
  runPendingEvents();
  EXPECT_TRUE(pressesArrive("Control+Shift+space", 1));
}

}  // namespace
}  // namespace navora
