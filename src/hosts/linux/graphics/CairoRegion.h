#pragma once

#include <memory>

#include <cairo.h>
#include <cairomm/surface.h>

namespace navora {

struct RegionDeleter {
  void operator()(cairo_region_t* region) const { cairo_region_destroy(region); }
};
using RegionPtr = std::unique_ptr<cairo_region_t, RegionDeleter>;

// Returns the pixels of a rectangle with rounded corners that are more than half inside it.
RegionPtr roundedRegion(int width, int height, double radius);

// Returns, for every row of `alpha` (FORMAT_A8), the pixels from the first to the last one that is
// at least half as opaque as the centre of the image: a translucent shape counts as a solid one.
RegionPtr coveredRegion(const Cairo::RefPtr<Cairo::ImageSurface>& alpha);

}  // namespace navora
