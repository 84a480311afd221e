#include "hosts/linux/graphics/CairoRegion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace navora {

RegionPtr roundedRegion(int width, int height, double radius) {
  RegionPtr region(cairo_region_create());
  for (int y = 0; y < height; ++y) {
    const double toCentre = radius - std::min(y, height - 1 - y) - 0.5;
    const double inset =
        toCentre > 0 ? radius - std::sqrt(radius * radius - toCentre * toCentre) : 0;
    const int left = static_cast<int>(std::lround(inset));
    const cairo_rectangle_int_t row{left, y, std::max(0, width - 2 * left), 1};
    cairo_region_union_rectangle(region.get(), &row);
  }
  return region;
}

RegionPtr coveredRegion(const Cairo::RefPtr<Cairo::ImageSurface>& alpha) {
  alpha->flush();
  const int width = alpha->get_width();
  const std::ptrdiff_t stride = alpha->get_stride();
  const auto row = [&](int y) { return alpha->get_data() + y * stride; };
  const int threshold = std::max(1, row(alpha->get_height() / 2)[width / 2] / 2);
  const auto isCovered = [&](unsigned char value) { return value >= threshold; };
  RegionPtr region(cairo_region_create());
  for (int y = 0; y < alpha->get_height(); ++y) {
    const auto* end = row(y) + width;
    const auto* first = std::find_if(static_cast<const unsigned char*>(row(y)), end, isCovered);
    if (first == end) continue;
    const auto* last = end - 1;
    while (!isCovered(*last))
      --last;
    const cairo_rectangle_int_t span{static_cast<int>(first - row(y)), y,
                                     static_cast<int>(last - first) + 1, 1};
    cairo_region_union_rectangle(region.get(), &span);
  }
  return region;
}

}  // namespace navora
