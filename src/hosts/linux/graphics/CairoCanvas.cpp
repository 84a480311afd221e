#include "hosts/linux/graphics/CairoCanvas.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace navora {
namespace {

constexpr double quarterTurn = std::numbers::pi / 2;

struct PatternDeleter {
  void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};

std::unique_ptr<cairo_pattern_t, PatternDeleter> patternFrom(const LinearGradient& gradient,
                                                             const Rectangle& bounds) {
  const double angle = gradient.angle * std::numbers::pi / 180;
  const double x = std::cos(angle);
  const double y = std::sin(angle);
  // Distance from the centre to the farthest corner, measured along the gradient.
  const double reach = (std::abs(bounds.width * x) + std::abs(bounds.height * y)) / 2;
  std::unique_ptr<cairo_pattern_t, PatternDeleter> pattern(
      cairo_pattern_create_linear(bounds.midX() - x * reach, bounds.midY() - y * reach,
                                  bounds.midX() + x * reach, bounds.midY() + y * reach));
  for (const auto& [location, color] : gradient.stops) {
    cairo_pattern_add_color_stop_rgba(pattern.get(), location, color.red, color.green, color.blue,
                                      color.alpha);
  }
  return pattern;
}

}  // namespace

CairoCanvas::CairoCanvas(cairo_t* context, Size bounds) : context_(context) {
  cairo_save(context_);
  cairo_translate(context_, 0, bounds.height);
  cairo_scale(context_, 1, -1);
}

CairoCanvas::~CairoCanvas() {
  cairo_restore(context_);
}

void CairoCanvas::addRoundedRectangle(const Rectangle& rectangle, double radius) {
  const double corner = std::min({radius, rectangle.width / 2, rectangle.height / 2});
  cairo_new_path(context_);
  if (corner <= 0) {
    cairo_rectangle(context_, rectangle.x, rectangle.y, rectangle.width, rectangle.height);
    return;
  }
  const double left = rectangle.x + corner;
  const double right = rectangle.maxX() - corner;
  const double bottom = rectangle.y + corner;
  const double top = rectangle.maxY() - corner;
  cairo_arc(context_, right, bottom, corner, -quarterTurn, 0);
  cairo_arc(context_, right, top, corner, 0, quarterTurn);
  cairo_arc(context_, left, top, corner, quarterTurn, 2 * quarterTurn);
  cairo_arc(context_, left, bottom, corner, 2 * quarterTurn, 3 * quarterTurn);
  cairo_close_path(context_);
}

void CairoCanvas::fillRoundedRectangle(const Rectangle& rectangle, double radius,
                                       const LinearGradient& gradient) {
  addRoundedRectangle(rectangle, radius);
  cairo_set_source(context_, patternFrom(gradient, rectangle).get());
  cairo_fill(context_);
}

void CairoCanvas::strokeRoundedRectangle(const Rectangle& rectangle, double radius, Color color,
                                         const StrokeStyle& style) {
  addRoundedRectangle(rectangle, radius);
  stroke(color, style);
}

void CairoCanvas::fillOval(const Rectangle& rectangle, Color color) {
  cairo_new_path(context_);
  cairo_save(context_);
  cairo_translate(context_, rectangle.midX(), rectangle.midY());
  cairo_scale(context_, rectangle.width / 2, rectangle.height / 2);
  cairo_arc(context_, 0, 0, 1, 0, 4 * quarterTurn);
  cairo_restore(context_);
  cairo_set_source_rgba(context_, color.red, color.green, color.blue, color.alpha);
  cairo_fill(context_);
}

void CairoCanvas::strokePath(const Path& path, Color color, const StrokeStyle& style) {
  cairo_new_path(context_);
  for (const auto& [kind, end, control1, control2] : path.elements()) {
    switch (kind) {
      case Path::Kind::moveTo:
        cairo_move_to(context_, end.x, end.y);
        break;
      case Path::Kind::lineTo:
        cairo_line_to(context_, end.x, end.y);
        break;
      case Path::Kind::curveTo:
        cairo_curve_to(context_, control1.x, control1.y, control2.x, control2.y, end.x, end.y);
        break;
    }
  }
  stroke(color, style);
}

void CairoCanvas::stroke(Color color, const StrokeStyle& style) {
  cairo_set_source_rgba(context_, color.red, color.green, color.blue, color.alpha);
  cairo_set_line_width(context_, style.lineWidth);
  cairo_set_line_cap(context_, style.roundCaps ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(context_, style.roundJoins ? CAIRO_LINE_JOIN_ROUND : CAIRO_LINE_JOIN_MITER);
  cairo_stroke(context_);
}

}  // namespace navora
