#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "end_to_end/driver/Geometry.h"

namespace navora::driver {

class XConnection;

struct PixelColor {
  int red = 0;  // 0 to 255 each
  int green = 0;
  int blue = 0;
  bool operator==(const PixelColor&) const = default;

  // The largest difference of a component.
  int distance(const PixelColor& other) const;
};

// What a part of the screen showed at one moment. Coordinates are those of the image, so (0, 0) is
// the corner of the captured region.
class Screenshot {
 public:
  // The whole screen, or the part of `region` that lies on it.
  static Screenshot capture(XConnection& connection);
  static Screenshot capture(XConnection& connection, Rectangle region);

  int width() const { return width_; }
  int height() const { return height_; }
  Rectangle bounds() const { return {0, 0, width_, height_}; }
  PixelColor pixel(Point at) const;
  PixelColor average(Rectangle region) const;
  Screenshot cropped(Rectangle region) const;

  // How many pixels differ in some component by more than `tolerance`; every pixel when the sizes
  // differ.
  std::size_t differingPixels(const Screenshot& other, int tolerance = 8) const;
  // How many pixels come within `tolerance` of `color`.
  std::size_t pixelsLike(PixelColor color, int tolerance = 8) const;
  // True when almost the whole image (all but one pixel in two hundred) has one colour.
  bool blank() const;

  // Writes a PNG file and the folders above it.
  void save(const std::filesystem::path& path) const;

 private:
  Screenshot(int width, int height, std::vector<std::uint32_t> pixels);
  Rectangle clipped(Rectangle region) const;

  int width_;
  int height_;
  std::vector<std::uint32_t> pixels_;  // 0xFFRRGGBB, row by row
};

}  // namespace navora::driver
