#pragma once

#include <cstdint>

#include "end_to_end/driver/Geometry.h"

namespace navora::driver {

class XConnection;

enum class MouseButton : std::uint8_t { left = 1, middle = 2, right = 3 };

// The pointer of the display, in screen coordinates.
class Mouse {
 public:
  explicit Mouse(XConnection& connection) : connection_(connection) {}

  void moveTo(Point point);
  void press(MouseButton button = MouseButton::left);
  void release(MouseButton button = MouseButton::left);
  void click(Point point, MouseButton button = MouseButton::left);
  void doubleClick(Point point);
  // Turns the wheel by a number of notches, down if positive.
  void scroll(Point point, int notches);
  Point position();

 private:
  void strike(MouseButton button);
  void event(std::uint8_t type, std::uint8_t detail, Point point = {});

  XConnection& connection_;
};

}  // namespace navora::driver
