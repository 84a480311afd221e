#pragma once

#include <cairo.h>

#include "platform/Canvas.h"
#include "platform/Geometry.h"

namespace navora {

// Paints on a cairo context whose y axis points down; the canvas's own points up.
class CairoCanvas final : public Canvas {
 public:
  // `context` must outlive the canvas, whose destructor restores its state. `bounds` is the size of
  // the view, whose upper left corner is the context's origin.
  CairoCanvas(cairo_t* context, Size bounds);
  ~CairoCanvas() override;
  CairoCanvas(const CairoCanvas&) = delete;
  CairoCanvas& operator=(const CairoCanvas&) = delete;

  void fillRoundedRectangle(const Rectangle& rectangle, double radius,
                            const LinearGradient& gradient) override;
  void strokeRoundedRectangle(const Rectangle& rectangle, double radius, Color color,
                              const StrokeStyle& style) override;
  void fillOval(const Rectangle& rectangle, Color color) override;
  void strokePath(const Path& path, Color color, const StrokeStyle& style) override;

 private:
  void addRoundedRectangle(const Rectangle& rectangle, double radius);
  void stroke(Color color, const StrokeStyle& style);

  cairo_t* context_;
};

}  // namespace navora
