#include "fakes/FakeImaging.h"

#include <algorithm>
#include <cmath>

namespace navora {
namespace {

double distance(Point one, Point other) {
  return std::hypot(one.x - other.x, one.y - other.y);
}

double distanceToLine(Point point, Point start, Point end) {
  const Point along{end.x - start.x, end.y - start.y};
  const double length = std::hypot(along.x, along.y);
  if (length == 0) return distance(point, start);
  const double projection = (point.x - start.x) * along.x + (point.y - start.y) * along.y;
  const double share = std::clamp(projection / (length * length), 0.0, 1.0);
  return distance(point, {start.x + share * along.x, start.y + share * along.y});
}

Point onCurve(Point start, const Path::Element& curve, double share) {
  const double rest = 1 - share;
  const auto weigh = [&](double first, double second, double third, double last) {
    return rest * rest * rest * first + 3 * rest * rest * share * second +
           3 * rest * share * share * third + share * share * share * last;
  };
  return {weigh(start.x, curve.control1.x, curve.control2.x, curve.end.x),
          weigh(start.y, curve.control1.y, curve.control2.y, curve.end.y)};
}

double distanceToCurve(Point point, Point start, const Path::Element& curve) {
  constexpr int pieces = 32;
  double nearest = distance(point, start);
  Point from = start;
  for (int piece = 1; piece <= pieces; ++piece) {
    const Point to = onCurve(start, curve, static_cast<double>(piece) / pieces);
    nearest = std::min(nearest, distanceToLine(point, from, to));
    from = to;
  }
  return nearest;
}

bool covers(const FakeCanvas::PathStroke& stroke, Point point) {
  const double reach = stroke.style.lineWidth / 2;
  Point start;
  for (const Path::Element& element : stroke.path.elements()) {
    const bool isHit =
        (element.kind == Path::Kind::lineTo &&
         distanceToLine(point, start, element.end) <= reach) ||
        (element.kind == Path::Kind::curveTo && distanceToCurve(point, start, element) <= reach);
    if (isHit) return true;
    start = element.end;
  }
  return false;
}

// Returns the distance of the point from the outline, negative inside.
double distanceToOutline(const Rectangle& rectangle, double wantedRadius, Point point) {
  const double radius = std::min({wantedRadius, rectangle.width / 2, rectangle.height / 2});
  const double beyondX = std::abs(point.x - rectangle.midX()) - (rectangle.width / 2 - radius);
  const double beyondY = std::abs(point.y - rectangle.midY()) - (rectangle.height / 2 - radius);
  return std::hypot(std::max(beyondX, 0.0), std::max(beyondY, 0.0)) +
         std::min(std::max(beyondX, beyondY), 0.0) - radius;
}

bool covers(const FakeCanvas::GradientFill& fill, Point point) {
  return distanceToOutline(fill.rectangle, fill.radius, point) <= 0;
}

bool covers(const FakeCanvas::RectangleStroke& stroke, Point point) {
  const double fromOutline = distanceToOutline(stroke.rectangle, stroke.radius, point);
  return std::abs(fromOutline) <= stroke.style.lineWidth / 2;
}

bool covers(const FakeCanvas::OvalFill& fill, Point point) {
  const double x = (point.x - fill.rectangle.midX()) / (fill.rectangle.width / 2);
  const double y = (point.y - fill.rectangle.midY()) / (fill.rectangle.height / 2);
  return std::hypot(x, y) <= 1;
}

Color colorOf(const FakeCanvas::GradientFill& fill) {
  return fill.gradient.stops.empty() ? Color{0, 0, 0, 0} : fill.gradient.stops.front().color;
}

template <typename Shape>
Color colorOf(const Shape& shape) {
  return shape.color;
}

Color over(Color upper, Color lower) {
  const double shining = lower.alpha * (1 - upper.alpha);
  const double alpha = upper.alpha + shining;
  if (alpha == 0) return {0, 0, 0, 0};
  const auto mix = [&](double ofUpper, double ofLower) {
    return (ofUpper * upper.alpha + ofLower * shining) / alpha;
  };
  return {mix(upper.red, lower.red), mix(upper.green, lower.green), mix(upper.blue, lower.blue),
          alpha};
}

}  // namespace

void FakeBitmap::draw(double newScale, const std::function<void(Canvas&)>& paint) {
  scale = newScale;
  canvas = {};
  paint(canvas);
}

std::optional<Color> FakeBitmap::colorAt(int x, int y) const {
  if (x < 0 || y < 0 || x >= wide_ || y >= high_) return std::nullopt;
  return pixel_ ? pixel_(x, y) : paintedAt({(x + 0.5) / scale, (high_ - y - 0.5) / scale});
}

Color FakeBitmap::paintedAt(Point point) const {
  Color result{0, 0, 0, 0};
  const auto layOn = [&](const auto& shape) {
    if (covers(shape, point)) result = over(colorOf(shape), result);
  };
  auto fill = canvas.gradientFills.begin();
  auto outline = canvas.rectangleStrokes.begin();
  auto oval = canvas.ovalFills.begin();
  auto stroke = canvas.pathStrokes.begin();
  for (const std::string& kind : canvas.order) {
    if (kind == "fill rectangle") layOn(*fill++);
    if (kind == "stroke rectangle") layOn(*outline++);
    if (kind == "fill oval") layOn(*oval++);
    if (kind == "stroke path") layOn(*stroke++);
  }
  return result;
}

}  // namespace navora
