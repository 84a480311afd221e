#pragma once

namespace navora {

// Lengths in points, the display's logical unit.
struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

}  // namespace navora
