#include <gmock/gmock.h>

#include "end_to_end/CaptureTest.h"

namespace navora::driver {
namespace {

using testing::HasSubstr;
using testing::Not;

// Another program that has grabbed the capture shortcut. It receives each press first and replays
// it to the focused window.
class ShortcutHolder {
 public:
  explicit ShortcutHolder(Display& display) : connection_(display.name()) {
    const auto cookie = xcb_grab_key_checked(
        connection_.get(), 0, connection_.root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT,
        spaceKeyCode(), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
    const XReply<xcb_generic_error_t> error(xcb_request_check(connection_.get(), cookie));
    if (error) throw TestError("The shortcut cannot be taken");
  }

  // Waits for a press of the shortcut and replays it to the focused window.
  void handOnPress() {
    waitUntil(
        [this] {
          const XReply<xcb_generic_event_t> event(xcb_poll_for_event(connection_.get()));
          return event && (event->response_type & 0x7F) == XCB_KEY_PRESS;
        },
        "the shortcut's holder sees the key");
    xcb_allow_events(connection_.get(), XCB_ALLOW_REPLAY_KEYBOARD, XCB_CURRENT_TIME);
    connection_.synchronize();
  }

 private:
  xcb_keycode_t spaceKeyCode() {
    constexpr xcb_keysym_t space = ' ';
    const xcb_setup_t* setup = xcb_get_setup(connection_.get());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const XReply<xcb_get_keyboard_mapping_reply_t> reply(xcb_get_keyboard_mapping_reply(
        connection_.get(), xcb_get_keyboard_mapping(connection_.get(), setup->min_keycode, count),
        nullptr));
    if (!reply) throw TestError("The display has no keyboard layout");
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    for (int index = 0; index < count; ++index) {
      if (symbols[index * reply->keysyms_per_keycode] == space)
        return static_cast<xcb_keycode_t>(setup->min_keycode + index);
    }
    throw TestError("The keyboard has no space key");
  }

  XConnection connection_;
};

class TakenShortcutTest : public CaptureTest {
 protected:
  ApplicationProcess::Options applicationOptions() const override {
    return {.environment = {{"NAVORA_DEBUG_HOTKEY", "1"}}};
  }
  bool startsApplication() const override { return false; }
  bool signsIn() const override { return false; }
};

TEST_F(TakenShortcutTest, OpensThePanelOnlyFromTheApplicationsOwnWindow) {
  ShortcutHolder holder(desktop().display());
  launch();
  EXPECT_THAT(
      application().errorText(),
      HasSubstr("Navora hotkey: InstallEventHandler status=0\n"
                "Navora hotkey: RegisterEventHotKey status=10, keyCode=49, modifiers=768\n"));

  desktop().keyboard().chord(hotKey);
  holder.handOnPress();
  waitUntil([&] { return panel() && panel()->active; }, "the capture panel is open");
  typeDraft("Still here");
  desktop().keyboard().chord("Escape");
  waitUntilPanelHidden();

  desktop().display().activate(other().id());
  desktop().display().waitUntilActive(other().id());
  desktop().keyboard().chord(hotKey);
  holder.handOnPress();
  EXPECT_TRUE(holdsFor([&] { return !panel(); }, std::chrono::milliseconds(500)));
  EXPECT_TRUE(application().running());
  EXPECT_THAT(application().errorText(), Not(HasSubstr("Carbon event received")));
}

}  // namespace
}  // namespace navora::driver
