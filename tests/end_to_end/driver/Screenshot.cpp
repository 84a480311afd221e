#include "end_to_end/driver/Screenshot.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

#include <png.h>

#include "end_to_end/driver/XConnection.h"
#include "tests/support/Wait.h"

namespace navora::driver {

namespace {

PixelColor unpack(std::uint32_t pixel) {
  return {static_cast<int>(pixel >> 16 & 0xFF), static_cast<int>(pixel >> 8 & 0xFF),
          static_cast<int>(pixel & 0xFF)};
}

Rectangle intersection(Rectangle a, Rectangle b) {
  const int left = std::max(a.x, b.x);
  const int top = std::max(a.y, b.y);
  const int right = std::min(a.x + a.width, b.x + b.width);
  const int bottom = std::min(a.y + a.height, b.y + b.height);
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

}  // namespace

int PixelColor::distance(const PixelColor& other) const {
  return std::max(
      {std::abs(red - other.red), std::abs(green - other.green), std::abs(blue - other.blue)});
}

Screenshot::Screenshot(int width, int height, std::vector<std::uint32_t> pixels)
    : width_(width), height_(height), pixels_(std::move(pixels)) {}

Screenshot Screenshot::capture(XConnection& connection) {
  const xcb_screen_t& screen = connection.screen();
  return capture(connection, {0, 0, screen.width_in_pixels, screen.height_in_pixels});
}

Screenshot Screenshot::capture(XConnection& connection, Rectangle region) {
  const xcb_screen_t& screen = connection.screen();
  region = intersection(region, {0, 0, screen.width_in_pixels, screen.height_in_pixels});
  if (region.empty()) throw TestError("The region to capture lies outside the screen");
  const auto cookie = xcb_get_image(
      connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(),
      static_cast<std::int16_t>(region.x), static_cast<std::int16_t>(region.y),
      static_cast<std::uint16_t>(region.width), static_cast<std::uint16_t>(region.height), ~0U);
  const XReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection.get(), cookie, nullptr));
  const auto count =
      static_cast<std::size_t>(region.width) * static_cast<std::size_t>(region.height);
  if (!reply || reply->depth != 24 ||
      static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) != count * 4) {
    throw TestError("The screen cannot be captured as an image of 24 bits");
  }
  const auto* data = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get()));
  std::vector<std::uint32_t> pixels(data, data + count);
  for (std::uint32_t& pixel : pixels)
    pixel |= 0xFF000000U;
  return {region.width, region.height, std::move(pixels)};
}

Rectangle Screenshot::clipped(Rectangle region) const {
  const Rectangle inside = intersection(region, bounds());
  if (inside.empty()) throw TestError("The region lies outside the screenshot");
  return inside;
}

PixelColor Screenshot::pixel(Point at) const {
  if (!bounds().contains(at)) throw TestError("The point lies outside the screenshot");
  return unpack(pixels_[static_cast<std::size_t>(at.y) * static_cast<std::size_t>(width_) +
                        static_cast<std::size_t>(at.x)]);
}

PixelColor Screenshot::average(Rectangle region) const {
  region = clipped(region);
  long red = 0;
  long green = 0;
  long blue = 0;
  for (int y = region.y; y < region.y + region.height; ++y) {
    for (int x = region.x; x < region.x + region.width; ++x) {
      const PixelColor color = pixel({x, y});
      red += color.red;
      green += color.green;
      blue += color.blue;
    }
  }
  const long count = static_cast<long>(region.width) * region.height;
  const auto rounded = [count](long sum) { return static_cast<int>((sum + count / 2) / count); };
  return {rounded(red), rounded(green), rounded(blue)};
}

Screenshot Screenshot::cropped(Rectangle region) const {
  region = clipped(region);
  std::vector<std::uint32_t> pixels;
  for (int y = region.y; y < region.y + region.height; ++y) {
    const auto row = pixels_.begin() + static_cast<std::ptrdiff_t>(y) * width_ + region.x;
    pixels.insert(pixels.end(), row, row + region.width);
  }
  return {region.width, region.height, std::move(pixels)};
}

std::size_t Screenshot::differingPixels(const Screenshot& other, int tolerance) const {
  if (width_ != other.width_ || height_ != other.height_) {
    return std::max(pixels_.size(), other.pixels_.size());
  }
  std::size_t count = 0;
  for (std::size_t index = 0; index < pixels_.size(); ++index) {
    if (unpack(pixels_[index]).distance(unpack(other.pixels_[index])) > tolerance) ++count;
  }
  return count;
}

std::size_t Screenshot::pixelsLike(PixelColor color, int tolerance) const {
  return static_cast<std::size_t>(std::count_if(
      pixels_.begin(), pixels_.end(),
      [&](std::uint32_t pixel) { return unpack(pixel).distance(color) <= tolerance; }));
}

bool Screenshot::blank() const {
  std::vector<std::uint32_t> sorted = pixels_;
  const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
  std::nth_element(sorted.begin(), middle, sorted.end());
  // A colour of more than half of the image is that of the median pixel.
  return pixels_.size() - pixelsLike(unpack(*middle), 2) <= pixels_.size() / 200;
}

void Screenshot::save(const std::filesystem::path& path) const {
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width_);
  image.height = static_cast<png_uint_32>(height_);
  image.format = PNG_FORMAT_BGRA;
  image.flags = PNG_IMAGE_FLAG_FAST;
  if (!png_image_write_to_file(&image, path.c_str(), 0, pixels_.data(), 0, nullptr)) {
    throw TestError("Cannot write " + path.string() + ": " + image.message);
  }
}

}  // namespace navora::driver
