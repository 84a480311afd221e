#include "hosts/linux/capture/CaptureCardView.h"

#include <gdkmm/screen.h>

#include "hosts/linux/graphics/CairoCanvas.h"
#include "hosts/linux/graphics/CairoRegion.h"

namespace navora {
void CaptureCardView::paint(const Cairo::RefPtr<Cairo::Context>& context, Size size) {
  const int scale = window_.get_scale_factor();
  if (!card_ || cardSize_ != size || cardScale_ != scale) card_ = drawnCard(size);
  cardSize_ = size;
  cardScale_ = scale;
  context->save();
  context->set_operator(Cairo::OPERATOR_SOURCE);
  context->set_source(card_, 0, 0);
  context->paint();
  context->restore();
}

Cairo::RefPtr<Cairo::Surface> CaptureCardView::drawnCard(Size size) {
  const auto card = window_.get_window()->create_similar_surface(
      Cairo::CONTENT_COLOR_ALPHA, static_cast<int>(size.width), static_cast<int>(size.height));
  const auto context = Cairo::Context::create(card);
  context->push_group();
  {
    CairoCanvas canvas(context->cobj(), size);
    delegate_.paintSurface(canvas, size);
  }
  context->pop_group_to_source();
  // Without a compositor the antialiased pixels of the rounded edge would blend with black.
  // Painting the card several times makes them nearly opaque.
  const int layers = window_.get_screen()->is_composited() ? 1 : 4;
  for (int layer = 0; layer < layers; ++layer)
    context->paint();
  return card;
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
  card_.clear();
  shape(size);
  window_.queue_draw();
}

}  // namespace navora
