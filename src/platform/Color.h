#pragma once

namespace navora {

// An sRGB colour, not premultiplied; every component from 0 to 1.
struct Color {
  double red, green, blue, alpha;
  bool operator==(const Color&) const = default;
};

}  // namespace navora
