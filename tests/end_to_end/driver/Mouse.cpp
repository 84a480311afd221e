#include "end_to_end/driver/Mouse.h"

#include <cstdlib>

#include <xcb/xtest.h>

#include "end_to_end/driver/XConnection.h"
#include "tests/support/Wait.h"

namespace navora::driver {

namespace {

constexpr std::uint8_t wheelUp = 4;
constexpr std::uint8_t wheelDown = 5;

}  // namespace

void Mouse::event(std::uint8_t type, std::uint8_t detail, Point point) {
  xcb_test_fake_input(connection_.get(), type, detail, XCB_CURRENT_TIME, XCB_NONE,
                      static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
}

void Mouse::moveTo(Point point) {
  event(XCB_MOTION_NOTIFY, 0, point);
  connection_.synchronize();
}

void Mouse::press(MouseButton button) {
  event(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
  connection_.synchronize();
}

void Mouse::release(MouseButton button) {
  event(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
  connection_.synchronize();
}

void Mouse::click(Point point, MouseButton button) {
  event(XCB_MOTION_NOTIFY, 0, point);
  strike(button);
  connection_.synchronize();
}

void Mouse::doubleClick(Point point) {
  // Sent at once, so that the second click is not too late on a busy machine.
  event(XCB_MOTION_NOTIFY, 0, point);
  strike(MouseButton::left);
  strike(MouseButton::left);
  connection_.synchronize();
}

void Mouse::strike(MouseButton button) {
  event(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
  event(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

void Mouse::scroll(Point point, int notches) {
  moveTo(point);
  const std::uint8_t wheel = notches < 0 ? wheelUp : wheelDown;
  for (int turned = 0; turned < std::abs(notches); ++turned) {
    event(XCB_BUTTON_PRESS, wheel);
    event(XCB_BUTTON_RELEASE, wheel);
  }
  connection_.synchronize();
}

Point Mouse::position() {
  const XReply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
      connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
  if (!reply) throw TestError("The display has exited");
  return {reply->root_x, reply->root_y};
}

}  // namespace navora::driver
