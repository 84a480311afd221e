#include "hosts/linux/tray/StatusIcon.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace navora {
namespace {

// Common icon sizes of panels and their doubles; trays scale the nearest one.
constexpr std::array<int, 5> sizes{22, 24, 32, 48, 64};

// The source interval, in pixels, that one target pixel covers.
struct Span {
  double begin;
  double end;

  int first() const { return static_cast<int>(std::floor(begin)); }
  int last(int length) const { return std::min(length, static_cast<int>(std::ceil(end))); }
  // Returns how much of the source pixel lies within the span, from 0 to 1.
  double share(int pixel) const {
    return std::min(end, pixel + 1.0) - std::max(begin, static_cast<double>(pixel));
  }
};

Span spanOf(int pixel, int targetLength, int sourceLength) {
  const double scale = static_cast<double>(sourceLength) / targetLength;
  return {pixel * scale, (pixel + 1) * scale};
}

// Returns the mean colour of an area, weighted by alpha.
Color meanOf(const Bitmap& bitmap, const Span& columns, const Span& rows) {
  Color sum{0, 0, 0, 0};
  double area = 0;
  for (int y = rows.first(); y < rows.last(bitmap.pixelsHigh()); ++y) {
    for (int x = columns.first(); x < columns.last(bitmap.pixelsWide()); ++x) {
      const double share = columns.share(x) * rows.share(y);
      const Color color = bitmap.colorAt(x, y).value_or(Color{0, 0, 0, 0});
      sum.red += share * color.alpha * color.red;
      sum.green += share * color.alpha * color.green;
      sum.blue += share * color.alpha * color.blue;
      sum.alpha += share * color.alpha;
      area += share;
    }
  }
  if (sum.alpha <= 0) return {0, 0, 0, 0};
  return {sum.red / sum.alpha, sum.green / sum.alpha, sum.blue / sum.alpha, sum.alpha / area};
}

std::uint8_t byteOf(double component) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
}

std::vector<std::uint8_t> pixelsOf(const Bitmap& bitmap, int size, std::optional<double> tint) {
  std::vector<std::uint8_t> bytes;
  for (int y = 0; y < size; ++y) {
    const Span rows = spanOf(y, size, bitmap.pixelsHigh());
    for (int x = 0; x < size; ++x) {
      const Color color = meanOf(bitmap, spanOf(x, size, bitmap.pixelsWide()), rows);
      for (const double component : {color.alpha, tint.value_or(color.red),
                                     tint.value_or(color.green), tint.value_or(color.blue)})
        bytes.push_back(byteOf(component));
    }
  }
  return bytes;
}

}  // namespace

GVariant* statusIconPixmaps(const Image& image, bool dark) {
  GVariantBuilder pixmaps;
  g_variant_builder_init(&pixmaps, G_VARIANT_TYPE("a(iiay)"));
  const auto bitmaps = image.representations();
  const auto finest = std::ranges::max_element(
      bitmaps, {}, [](const std::shared_ptr<Bitmap>& bitmap) { return bitmap->pixelsWide(); });
  if (finest == bitmaps.end()) return g_variant_builder_end(&pixmaps);
  const auto tint = image.isTemplate() ? std::optional(dark ? 1.0 : 0.0) : std::nullopt;
  for (const int size : sizes) {
    const auto pixels = pixelsOf(**finest, size, tint);
    g_variant_builder_add(&pixmaps, "(ii@ay)", size, size,
                          g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, pixels.data(),
                                                    pixels.size(), sizeof(std::uint8_t)));
  }
  return g_variant_builder_end(&pixmaps);
}

}  // namespace navora
