#include "hosts/linux/capture/CaptureCardView.h"

#include <algorithm>
#include <cstddef>
#include <memory>

#include <gdkmm/screen.h>

#include "hosts/linux/graphics/CairoCanvas.h"

namespace navora {
namespace {

struct RegionDeleter {
  void operator()(cairo_region_t* region) const { cairo_region_destroy(region); }
};
using RegionPtr = std::unique_ptr<cairo_region_t, RegionDeleter>;

// From the first to the last pixel of every row that is at least half covered. A translucent card
// counts as a whole: what is full is told by the picture's middle.
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

}  // namespace

void CaptureCardView::paint(const Cairo::RefPtr<Cairo::Context>& context, Size size) {
  context->save();
  context->set_operator(Cairo::OPERATOR_CLEAR);
  context->paint();
  context->restore();

  context->save();
  context->push_group();
  {
    CairoCanvas canvas(context->cobj(), size);
    delegate_.paintSurface(canvas, size);
  }
  context->pop_group_to_source();
  // Nothing shines through a window without a compositor: the half-covered pixels of the rounded
  // edge would be half black. The card over itself brings them to the colour of the edge.
  const int layers = window_.get_screen()->is_composited() ? 1 : 4;
  for (int layer = 0; layer < layers; ++layer)
    context->paint();
  context->restore();
}

void CaptureCardView::shape(Size size) {
  const auto surface = window_.get_window();
  if (!surface) return;
  if (window_.get_screen()->is_composited()) {
    gdk_window_shape_combine_region(surface->gobj(), nullptr, 0, 0);
    return;
  }
  const auto image = Cairo::ImageSurface::create(Cairo::FORMAT_A8, static_cast<int>(size.width),
                                                 static_cast<int>(size.height));
  const auto context = Cairo::Context::create(image);
  {
    CairoCanvas canvas(context->cobj(), size);
    delegate_.paintSurface(canvas, size);
  }
  gdk_window_shape_combine_region(surface->gobj(), coveredRegion(image).get(), 0, 0);
}

void CaptureCardView::redraw(Size size) {
  shape(size);
  window_.queue_draw();
}

}  // namespace navora
