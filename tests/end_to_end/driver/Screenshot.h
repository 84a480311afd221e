#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "end_to_end/driver/Geometry.h"

namespace navora::driver {

class XConnection;

struct PixelColor {
  int red = 0;  // components are 0 to 255
  int green = 0;
  int blue = 0;
  bool operator==(const PixelColor&) const = default;

  // Returns the largest difference of a component.
  int distance(const PixelColor& other) const;
};

// An image of a region of the screen. Coordinates are relative to the region's corner.
class Screenshot {
 public:
  // Captures the whole screen, or the part of `region` on it.
  static Screenshot capture(XConnection& connection);
  static Screenshot capture(XConnection& connection, Rectangle region);

  int width() const { return width_; }
  int height() const { return height_; }
  Rectangle bounds() const { return {0, 0, width_, height_}; }
  PixelColor pixel(Point at) const;
  PixelColor average(Rectangle region) const;
  Screenshot cropped(Rectangle region) const;

  // Returns the number of pixels with a component that differs by more than `tolerance`; all pixels
  // if the sizes differ.
  std::size_t differingPixels(const Screenshot& other, int tolerance = 8) const;
  // Returns the number of pixels within `tolerance` of `color`.
  std::size_t pixelsLike(PixelColor color, int tolerance = 8) const;
  // Returns whether at least 99.5 % of the image has one colour.
  bool blank() const;

  // Writes a PNG file, and creates missing parent folders.
  void save(const std::filesystem::path& path) const;

 private:
  Screenshot(int width, int height, std::vector<std::uint32_t> pixels);
  Rectangle clipped(Rectangle region) const;

  int width_;
  int height_;
  std::vector<std::uint32_t> pixels_;  // 0xFFRRGGBB, row by row
};

}  // namespace navora::driver
