#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>

#include "hosts/linux/LinuxKeyEvents.h"

namespace navora {
namespace {

GdkEventKey pressed(guint keyval, guint state = 0) {
  GdkEventKey event{};
  event.type = GDK_KEY_PRESS;
  event.keyval = keyval;
  event.state = state;
  return event;
}

TEST(LinuxKeyEvents, NamesTheKeysThatTheCoreKnows) {
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_Return)).keyCode, KeyEvent::returnKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_KP_Enter)).keyCode, KeyEvent::keypadEnterKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_Escape)).keyCode, KeyEvent::escapeKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_space)).keyCode, KeyEvent::spaceKey);
  EXPECT_EQ(keyEventFrom(pressed(GDK_KEY_a)).keyCode, KeyEvent::otherKey);
}

TEST(LinuxKeyEvents, TranslatesModifiers) {
  const auto modifiers = [](guint state) {
    return keyEventFrom(pressed(GDK_KEY_Return, state)).modifiers;
  };
  EXPECT_EQ(modifiers(0), 0u);
  EXPECT_EQ(modifiers(GDK_CONTROL_MASK), KeyEvent::control);
  EXPECT_EQ(modifiers(GDK_SHIFT_MASK | GDK_MOD1_MASK), KeyEvent::shift | KeyEvent::option);
  EXPECT_EQ(modifiers(GDK_SUPER_MASK), KeyEvent::command);
  EXPECT_EQ(modifiers(GDK_LOCK_MASK), KeyEvent::capsLock);
  EXPECT_EQ(modifiers(GDK_MOD2_MASK | GDK_BUTTON1_MASK), 0u);
}

TEST(LinuxKeyEvents, TakesControlForTheMainModifierOfShortcuts) {
  const auto event = shortcutEventFrom(pressed(GDK_KEY_space, GDK_CONTROL_MASK | GDK_SHIFT_MASK));
  EXPECT_EQ(event, (KeyEvent{KeyEvent::spaceKey, KeyEvent::command | KeyEvent::shift}));
  EXPECT_EQ(shortcutEventFrom(pressed(GDK_KEY_space, GDK_SUPER_MASK)).modifiers, KeyEvent::control);
}

}  // namespace
}  // namespace navora
